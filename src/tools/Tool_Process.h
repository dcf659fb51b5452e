#pragma once

#include <QByteArray>
#include <QEventLoop>
#include <QObject>
#include <QProcess>
#include <QStringList>

// One run of an external tool. Owns its QProcess, never lets the child read a terminal
// (stdin is the null device, so ffmpeg cannot stop to ask a question), and reports its end
// once, whether the child exited, crashed or could not be started at all.
class Tool_Process : public QObject {
    Q_OBJECT
public:
    enum class Output {
        Separate, // standard error arrives as chunks; standard output is read and dropped
        Merged,   // both channels are collected into one text
    };

    explicit Tool_Process(QObject* parent = nullptr);
    ~Tool_Process() override;

    void start(const QString& program, const QStringList& arguments, Output output);

    // Returns when the child has ended; the event loop turns meanwhile so the window paints.
    void waitForEnd(QEventLoop::ProcessEventsFlags flags = QEventLoop::AllEvents);

    // Asks the child to end, and kills it if it has not after two seconds.
    void stop();

    bool hasEnded() const { return b_Ended; }
    bool failedToStart() const { return b_Failed_To_Start; }
    // Ended by a signal (killed, crashed) rather than by exiting.
    bool killed() const { return b_Killed; }
    int exitCode() const { return i_Exit_Code; }
    const QByteArray& mergedOutput() const { return merged; }
    // The last few kilobytes of standard error, for the log.
    const QByteArray& errorTail() const { return tail; }

    // Ends every child still running; used when the process quits at once.
    static void Kill_All_Running();

signals:
    void standardErrorData(const QByteArray& chunk);
    void ended();

private:
    void readStandardError();
    void readStandardOutput();
    void finish();

    QProcess process;
    Output output = Output::Separate;
    QByteArray merged;
    QByteArray tail;
    bool b_Ended = false;
    bool b_Failed_To_Start = false;
    bool b_Killed = false;
    int i_Exit_Code = -1;
};
