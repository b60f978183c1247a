// SPDX-License-Identifier: MIT
#include "platform/linux/single-instance/ApplicationOnBus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds answerTime = std::chrono::seconds(2);

constexpr QStringView actions[] = {u"recent", u"undo", u"instant", u"reveal", u"quit"};

QString busName()
{
    return u"app.velmora.Velmora"_s;
}

QString objectPath()
{
    return u"/app/velmora/Velmora"_s;
}

/// The other process went away before or during the call. A call that timed out looks the same.
bool isOwnerGone(const QDBusMessage &answer)
{
    const QDBusError error(answer);
    return error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::NoReply ||
           error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

ApplicationOnBus::ApplicationOnBus() : m_bus(QDBusConnection::sessionBus()) {}

ApplicationOnBus::~ApplicationOnBus()
{
    if (m_ownsName)
        m_bus.unregisterService(busName());
}

ApplicationOnBus::Claim ApplicationOnBus::claim(const LaunchToken &token)
{
    if (!m_bus.isConnected())
        return Claim::Impossible;
    // The object is registered before the name, so that a process that sees the name can call it.
    m_bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    QDBusMessage activate = QDBusMessage::createMethodCall(
        busName(), objectPath(), u"org.freedesktop.Application"_s, u"Activate"_s);
    activate.setAutoStartService(false);
    activate << token.platformData();
    QDeadlineTimer deadline(answerTime);
    do {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
            m_bus.interface()->registerService(busName());
        if (!reply.isValid())
            return Claim::Impossible;
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered) {
            m_ownsName = true;
            return Claim::Ours;
        }
        const int timeLeft = std::max(1, int(deadline.remainingTime()));
        const QDBusMessage answer = m_bus.call(activate, QDBus::Block, timeLeft);
        if (!isOwnerGone(answer))
            break;
    } while (!deadline.hasExpired());
    m_bus.unregisterObject(objectPath());
    return Claim::Theirs;
}

void ApplicationOnBus::Activate(const QVariantMap &platformData)
{
    Q_EMIT activated(LaunchToken::fromPlatformData(platformData));
}

void ApplicationOnBus::Open(const QStringList &, const QVariantMap &platformData)
{
    Q_EMIT activated(LaunchToken::fromPlatformData(platformData));
}

void ApplicationOnBus::ActivateAction(const QString &name, const QVariantList &,
                                      const QVariantMap &platformData)
{
    if (std::find(std::begin(actions), std::end(actions), name) == std::end(actions)) {
        sendErrorReply(QDBusError::InvalidArgs, u"No such action: "_s + name);
        return;
    }
    Q_EMIT actionActivated(name, LaunchToken::fromPlatformData(platformData));
}
