// SPDX-License-Identifier: MIT
#include "platform/linux/single-instance/ApplicationOnSocket.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds answerTime = std::chrono::seconds(2);
constexpr std::chrono::milliseconds lockTime{100};

/// Longer than any token. A sender of more is not another instance.
constexpr qsizetype longestCall = 1 << 16;

constexpr QByteArrayView answer = "here\n";

constexpr int callersInWaiting = 16;

/// Absent when the path is too long.
std::optional<sockaddr_un> addressOf(const QString &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray bytes = QFile::encodeName(path);
    if (size_t(bytes.size()) >= sizeof(address.sun_path))
        return std::nullopt;
    std::memcpy(address.sun_path, bytes.constData(), size_t(bytes.size()));
    return address;
}

/// From now on, a call on the socket gives up after blocking for this time.
void limit(int descriptor, std::chrono::milliseconds time)
{
    const timeval value = {time.count() / 1000, time.count() % 1000 * 1000};
    for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO})
        ::setsockopt(descriptor, SOL_SOCKET, direction, &value, sizeof value);
}

bool sendAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t sent = ::send(descriptor, bytes.data(), size_t(bytes.size()), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes = bytes.sliced(sent);
    }
    return true;
}

bool isOursAlone(const QByteArray &folder)
{
    struct stat status = {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid() && (status.st_mode & 077) == 0;
}

/// A folder that no other user can write to; empty when there is none.
QString privateFolder()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && isOursAlone(runtime))
        return QFile::decodeName(runtime);
    const QByteArray own = "/tmp/velmora-" + QByteArray::number(::getuid());
    ::mkdir(own.constData(), S_IRWXU);
    return isOursAlone(own) ? QFile::decodeName(own) : QString();
}

/// Whether the process that listens on the socket has answered.
bool activateOther(const QString &socketPath, const LaunchToken &token, QDeadlineTimer deadline)
{
    const std::optional<sockaddr_un> address = addressOf(socketPath);
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!address || !socket)
        return false;
    limit(socket.number(),
          std::chrono::milliseconds(std::max<qint64>(1, deadline.remainingTime())));
    if (::connect(socket.number(), reinterpret_cast<const sockaddr *>(&*address),
                  sizeof *address) != 0)
        return false;
    const QJsonObject call = QJsonObject::fromVariantMap(token.platformData());
    const QByteArray line = QJsonDocument(call).toJson(QJsonDocument::Compact) + '\n';
    if (!sendAll(socket.number(), line))
        return false;
    char received[answer.size()];
    const ssize_t length = ::recv(socket.number(), received, sizeof received, MSG_WAITALL);
    return QByteArrayView(received, std::max<ssize_t>(0, length)) == answer;
}

/// A call being received. It ends with an answer, or without one when it is not a valid call.
class Caller : public QObject
{
public:
    using Handler = std::function<void(const LaunchToken &token)>;

    Caller(Descriptor descriptor, Handler handler, QObject *parent)
        : QObject(parent)
        , m_descriptor(std::move(descriptor))
        , m_notifier(m_descriptor.number(), QSocketNotifier::Read)
        , m_handler(std::move(handler))
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, &Caller::read);
    }

private:
    void read()
    {
        char piece[4096];
        const ssize_t length = ::recv(m_descriptor.number(), piece, sizeof piece, MSG_DONTWAIT);
        if (length > 0)
            m_call.append(piece, length);
        else if (length == 0 || errno != EAGAIN)
            return deleteLater();
        const qsizetype end = m_call.indexOf('\n');
        if (end < 0 && m_call.size() <= longestCall)
            return;
        m_notifier.setEnabled(false);
        deleteLater();
        const QJsonDocument call = QJsonDocument::fromJson(m_call.left(end));
        if (end < 0 || !call.isObject())
            return;
        // The caller may have stopped waiting.
        sendAll(m_descriptor.number(), answer);
        m_handler(LaunchToken::fromPlatformData(call.object().toVariantMap()));
    }

    Descriptor m_descriptor;
    QSocketNotifier m_notifier;
    Handler m_handler;
    QByteArray m_call;
};

} // namespace

ApplicationOnSocket::Claim ApplicationOnSocket::claim(const LaunchToken &token)
{
    const QString folder = privateFolder();
    if (folder.isEmpty())
        return Claim::Impossible;
    const QString socketPath = folder + u"/velmora.socket"_s;
    m_lock = std::make_unique<QLockFile>(folder + u"/velmora.lock"_s);
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
        // The other process may not be listening yet, or may be about to end: try again.
        if (activateOther(socketPath, token, deadline))
            return Claim::Theirs;
    } while (!deadline.hasExpired());
    return Claim::Theirs;
}

void ApplicationOnSocket::listen(const QString &socketPath)
{
    const std::optional<sockaddr_un> address = addressOf(socketPath);
    m_socket.emplace(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!address || !*m_socket)
        return;
    // A process that has ended left the socket behind.
    ::unlink(address->sun_path);
    if (::bind(m_socket->number(), reinterpret_cast<const sockaddr *>(&*address),
               sizeof *address) != 0)
        return;
    ::chmod(address->sun_path, S_IRUSR | S_IWUSR);
    ::listen(m_socket->number(), callersInWaiting);
    m_notifier = std::make_unique<QSocketNotifier>(m_socket->number(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ApplicationOnSocket::accept);
}

void ApplicationOnSocket::accept()
{
    Descriptor caller(::accept4(m_socket->number(), nullptr, nullptr, SOCK_CLOEXEC));
    if (caller)
        new Caller(
            std::move(caller), [this](const auto &token) { Q_EMIT activated(token); }, this);
}
