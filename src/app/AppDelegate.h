#pragma once

#include "app/Prompts.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class MainWindow;

// What probing a file found: its duration text, or why there is none.
struct Duration_Probe {
    std::optional<QString> text; // " HH:MM:SS.h" as ffmpeg printed it
    bool toolStarted = true;     // false: ffmpeg itself could not be run (already reported)
};
class Window_Progress;

// The editing session: the file, its working copy, durations, segments, the tools and the
// windows. Every command is a method; each is defined in the folder of its subsystem.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    // Start-up and shutdown (app/StartUp.cpp).
    void applicationDidFinishLaunching();
    void RemoveAllContentInFolder(const QString& folder);
    void Terminate_App();
    void windowWillClose();
    void OnMenuQuit();

    // The seam for alerts, panels and the desktop.
    Prompts& prompts() { return *prompter; }
    void setPrompts(std::unique_ptr<Prompts> replacement) { prompter = std::move(replacement); }

    // Tools (tools/Duration.cpp, tools/Tool_Runner.cpp).
    std::optional<QString> Run_Tool_Blocking(const QString& tool, const QStringList& arguments);
    Duration_Probe GetMediaFileDuration(const QString& path);
    void Show_Window_Progress();
    void Close_Window_Progress();
    void Set_Progress_Value(float percentage);
    bool Run_Tool_With_Progress(const QString& tool, const QStringList& arguments, quint64 type);
    void errData(const QByteArray& chunk);
    void terminatedNotification();
    void Report_Tool_Not_Started(const QString& tool);

    // Source file and working copy.
    QString s_File_Path;
    QString sVideoFile;

    // Durations.
    QString s_Duration;
    quint64 i_Duration_in_Seconds = 0;
    QString s_Orig_Duration;
    quint64 i_Orig_Duration_in_Seconds = 0;
    quint64 u_Duration_Segment_in_Seconds = 0;
    quint64 u_Duration_All_Segments_in_Seconds = 0;
    quint64 u_Type_Progress = 0;

    // Thumbnails and waveform.
    QStringList array_Time_Stamps;
    QList<QImage> array_Thumbnails;
    bool b_Draw_Thumbnails = false;
    qint32 iCurrentSpectrumIndex = 0;

    // Concatenation.
    QStringList array_Concatenate;
    QString s_Concatenate_Resolution;

    // Child processes and progress.
    bool terminated = false;
    std::unique_ptr<Window_Progress> windowProgress;

    // Windows, tools and folders.
    MainWindow* window = nullptr;
    QString s_Output_Folder;
    QString sffmpegPath;
    QString simg2webpPath;

    // How the process ends; tests replace it to observe the exit status.
    std::function<void(int)> exitProcess;

private:
    std::unique_ptr<MainWindow> mainWindow;
    std::unique_ptr<Prompts> prompter;
};
