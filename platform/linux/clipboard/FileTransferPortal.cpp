// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/FileTransferPortal.h"

#include "filesystem/Descriptor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QFile>

#include <chrono>
#include <fcntl.h>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// The portal answers within milliseconds. One that takes longer than this counts as broken.
constexpr std::chrono::milliseconds answerLimit = 2s;

/// How long the end of the program waits for a call that has begun.
constexpr auto longestWaitAtEnd = 100ms;

QString busName()
{
    return u"org.freedesktop.portal.Documents"_s;
}

/// The arguments of the answer; nothing if the portal has refused. Blocks.
std::optional<QVariantList> call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(busName(), u"/org/freedesktop/portal/documents"_s,
                                       u"org.freedesktop.portal.FileTransfer"_s, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(message, QDBus::Block, int(answerLimit.count()));
    if (answer.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    return answer.arguments();
}

void stopTransfer(const QString &key)
{
    call(u"StopTransfer"_s, {key});
}

/// The key; empty if there is no such file or the portal has refused.
QString startTransfer(const QString &path)
{
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC));
    if (!file)
        return {};
    // The receiver gets a copy, so it need not write; and it may paste the file more than once.
    const QVariantMap options = {{u"writable"_s, false}, {u"autostop"_s, false}};
    const std::optional<QVariantList> answer = call(u"StartTransfer"_s, {options});
    if (!answer || answer->isEmpty())
        return {};
    const QString key = answer->first().toString();
    const QList<QDBusUnixFileDescriptor> files = {QDBusUnixFileDescriptor(file.number())};
    if (call(u"AddFiles"_s, {key, QVariant::fromValue(files), QVariantMap()}))
        return key;
    stopTransfer(key);
    return {};
}

} // namespace

FileTransferPortal::FileTransferPortal() : m_thread(longestWaitAtEnd)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    const auto *names =
        new QDBusServiceWatcher(busName(), bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(names, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                setRunning(!owner.isEmpty());
            });
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << busName();
    const auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                const QDBusPendingReply<bool> isOwned = *call;
                if (isOwned.isValid() && isOwned.value())
                    setRunning(true);
            });
    // A clipboard manager that keeps what is on the clipboard would keep a void key.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { setRunning(false); });
}

void FileTransferPortal::setRunning(bool isRunning)
{
    m_isRunning = isRunning;
    Q_EMIT changed();
}

FileTransferPortal::TransferPointer FileTransferPortal::start(const QUrl &file)
{
    const auto transfer = std::make_shared<Transfer>();
    m_thread.run([transfer, path = file.toLocalFile()] {
        transfer->result.set_value(transfer->isWanted ? startTransfer(path) : QString());
    });
    return transfer;
}

void FileTransferPortal::stop(const TransferPointer &transfer)
{
    transfer->isWanted = false;
    if (!m_isRunning)
        return;
    // By then it has been started, or left out.
    m_thread.run([transfer] {
        if (const QString key = transfer->key.get(); !key.isEmpty())
            stopTransfer(key);
    });
}
