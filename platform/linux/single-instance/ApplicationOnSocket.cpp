#include "platform/linux/single-instance/ApplicationOnSocket.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

#include <algorithm>
#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::chrono::milliseconds answerTime = std::chrono::seconds(2);
constexpr std::chrono::milliseconds lockTime{100};

/// Longer than any token. Whoever sends more is not another instance.
constexpr qint64 longestCall = 1 << 16;

constexpr char answer[] = "here\n";

bool isOursAlone(const QByteArray &folder)
{
    struct stat status = {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid() && (status.st_mode & 077) == 0;
}

/// A folder that nobody else can write to; empty when there is none.
QString privateFolder()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && isOursAlone(runtime))
        return QFile::decodeName(runtime);
    const QByteArray own = "/tmp/velmora-" + QByteArray::number(::getuid());
    ::mkdir(own.constData(), S_IRWXU);
    return isOursAlone(own) ? QFile::decodeName(own) : QString();
}

/// Whether the process that listens at the socket has answered.
bool activateOther(const QString &socketPath, const LaunchToken &token, QDeadlineTimer deadline)
{
    const auto timeLeft = [&] { return std::max(1, int(deadline.remainingTime())); };
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(timeLeft()))
        return false;
    const QJsonObject call = QJsonObject::fromVariantMap(token.platformData());
    socket.write(QJsonDocument(call).toJson(QJsonDocument::Compact) + '\n');
    while (!socket.canReadLine()) {
        if (deadline.hasExpired() || !socket.waitForReadyRead(timeLeft()))
            return false;
    }
    return socket.readLine() == answer;
}

} // namespace

ApplicationOnSocket::Claim ApplicationOnSocket::claim(const LaunchToken &token)
{
    const QString folder = privateFolder();
    if (folder.isEmpty())
        return Claim::Impossible;
    const QString socketPath = folder + QStringLiteral("/velmora.socket");
    m_lock = std::make_unique<QLockFile>(folder + QStringLiteral("/velmora.lock"));
    // A running process still holds this lock, however old it is.
    m_lock->setStaleLockTime(0);
    QDeadlineTimer deadline(answerTime);
    do {
        if (m_lock->tryLock(int(lockTime.count()))) {
            listen(socketPath);
            return Claim::Ours;
        }
        if (m_lock->error() != QLockFile::LockFailedError)
            return Claim::Impossible;
        // The other process may not listen yet, or may be about to end: try again.
        if (activateOther(socketPath, token, deadline))
            return Claim::Theirs;
    } while (!deadline.hasExpired());
    return Claim::Theirs;
}

void ApplicationOnSocket::listen(const QString &socketPath)
{
    // The socket there was left behind by a process that has ended.
    QLocalServer::removeServer(socketPath);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            connect(caller, &QLocalSocket::readyRead, this, [this, caller] { readCall(caller); });
            readCall(caller);
        }
    });
    m_server.listen(socketPath);
}

void ApplicationOnSocket::readCall(QLocalSocket *caller)
{
    if (!caller->canReadLine()) {
        if (caller->bytesAvailable() > longestCall)
            caller->abort();
        return;
    }
    const QJsonDocument call = QJsonDocument::fromJson(caller->readLine(longestCall));
    if (!call.isObject()) {
        caller->abort();
        return;
    }
    caller->write(answer);
    caller->disconnectFromServer();
    Q_EMIT activated(LaunchToken::fromPlatformData(call.object().toVariantMap()));
}
