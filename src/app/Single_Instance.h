#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <memory>

class QLocalSocket;

// One Corvanta per work folder. The first start takes a lock and serves a local socket; a later
// start hands its file (or only the wish to be shown) to that instance and ends without
// touching the work folder. A lock or socket left by an instance that died does not count.
class Single_Instance : public QObject {
    Q_OBJECT
public:
    enum class Claim {
        Claimed,     // this process is the running instance now
        Handed_Over, // another instance took the request; this process ends
        Unanswered,  // another instance holds the lock but does not answer
    };

    // runtimeFolder holds the lock and the socket; workFolder names the instance.
    Single_Instance(const QString& runtimeFolder, const QString& workFolder,
                    QObject* parent = nullptr);
    ~Single_Instance() override;

    // file: absolute path to open, or empty.
    Claim claim(const QString& file, int patienceMilliseconds = 5000);

signals:
    // A later start asked for this file (empty: only to be shown).
    void fileHandedOver(const QString& file);

private:
    bool handOver(const QString& file) const;
    void serve();
    void take(QLocalSocket* socket);

    QString s_Server_Name;
    QLockFile lock;
    std::unique_ptr<QLocalServer> server;
};
