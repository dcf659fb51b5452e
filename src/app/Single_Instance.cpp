#include "app/Single_Instance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>

namespace {

constexpr char Answer[] = "ok\n";

QString instanceKey(const QString& workFolder)
{
    const QByteArray hash =
        QCryptographicHash::hash(workFolder.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral("corvanta-") + QString::fromLatin1(hash.left(16));
}

} // namespace

Single_Instance::Single_Instance(const QString& runtimeFolder, const QString& workFolder,
                                 QObject* parent)
    : QObject(parent)
    , s_Server_Name(
          QDir(runtimeFolder).filePath(instanceKey(workFolder) + QStringLiteral(".socket")))
    , lock(QDir(runtimeFolder).filePath(instanceKey(workFolder) + QStringLiteral(".lock")))
{
    QDir().mkpath(runtimeFolder);
    // A live instance holds the lock for as long as it runs; only a dead one's lock is stale.
    lock.setStaleLockTime(0);
}

Single_Instance::~Single_Instance()
{
    server.reset();
    lock.unlock();
}

Single_Instance::Claim Single_Instance::claim(const QString& file, int patienceMilliseconds)
{
    const QDeadlineTimer deadline(patienceMilliseconds);
    for (;;) {
        if (handOver(file))
            return Claim::Handed_Over;
        if (lock.tryLock(0)) {
            // Whatever socket is left belongs to an instance that has died.
            QLocalServer::removeServer(s_Server_Name);
            serve();
            return Claim::Claimed;
        }
        // Another instance is starting at this very moment: its socket comes up shortly.
        if (deadline.hasExpired())
            return Claim::Unanswered;
        QThread::msleep(50);
    }
}

bool Single_Instance::handOver(const QString& file) const
{
    QLocalSocket socket;
    socket.connectToServer(s_Server_Name);
    if (!socket.waitForConnected(1000))
        return false;
    socket.write(file.toUtf8() + '\n');
    if (!socket.waitForBytesWritten(1000))
        return false;
    while (!socket.canReadLine())
        if (!socket.waitForReadyRead(3000))
            return false;
    return socket.readLine() == Answer;
}

void Single_Instance::serve()
{
    server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(s_Server_Name)) {
        qWarning("Later starts cannot reach this Corvanta: %s",
                 qUtf8Printable(server->errorString()));
        return;
    }
    connect(server.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] { take(socket); });
            take(socket);
        }
    });
}

void Single_Instance::take(QLocalSocket* socket)
{
    if (!socket->canReadLine())
        return;
    const QString file = QString::fromUtf8(socket->readLine()).chopped(1);
    socket->write(Answer);
    socket->disconnectFromServer();
    // Opening a file turns the event loop: let the socket's own signal return first.
    QMetaObject::invokeMethod(
        this, [this, file] { emit fileHandedOver(file); }, Qt::QueuedConnection);
}
