// SPDX-License-Identifier: MIT
#include "platform/linux/status-item/StatusNotifierSearch.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Hosts announce themselves, but not every watcher passes that on.
constexpr std::chrono::milliseconds askAgainAfter[] = {2s, 5s, 10s, 20s, 30s};

QString watcherName()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}

QString watcherPath()
{
    return u"/StatusNotifierWatcher"_s;
}

/// The bus replies with this when the service does not run and was not to be started.
bool meansNobody(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown ||
           error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

StatusNotifierSearch::StatusNotifierSearch(Patience patience) : m_patience(patience) {}

StatusNotifierSearch::~StatusNotifierSearch() = default;

void StatusNotifierSearch::start()
{
    if (QGuiApplication::platformName() == u"xcb") {
        m_xembedTray = std::make_unique<XembedTray>();
        connect(m_xembedTray.get(), &XembedTray::appeared, this,
                &StatusNotifierSearch::considerXembedTray);
    }
    for (const std::chrono::milliseconds limit :
         {m_patience.withoutWatcher, m_patience.withoutHost}) {
        QTimer::singleShot(limit, Qt::PreciseTimer, this, [this, limit] {
            m_waited = limit;
            considerXembedTray();
        });
    }
    listenToBus();
}

void StatusNotifierSearch::listenToBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_hasWatcher = false;
        return;
    }
    auto *names =
        new QDBusServiceWatcher(watcherName(), bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(names, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusNotifierSearch::askForHost);
    connect(names, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { m_hasWatcher = false; });
    bus.connect(watcherName(), watcherPath(), watcherName(), u"StatusNotifierHostRegistered"_s,
                this, SLOT(askForHost()));
    for (const std::chrono::milliseconds delay : askAgainAfter)
        QTimer::singleShot(delay, this, &StatusNotifierSearch::askForHost);
    askForHost();
}

void StatusNotifierSearch::askForHost()
{
    if (m_isFound)
        return;
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherName(), watcherPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setAutoStartService(false);
    question << watcherName() << u"IsStatusNotifierHostRegistered"_s;
    auto *call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        m_hasWatcher = !reply.isError() || !meansNobody(reply.error());
        if (reply.isValid() && reply.value().variant().toBool())
            finish(StatusBar::Host);
        else
            considerXembedTray();
    });
}

void StatusNotifierSearch::considerXembedTray()
{
    if (m_isFound || !m_hasWatcher)
        return;
    const auto limit = *m_hasWatcher ? m_patience.withoutHost : m_patience.withoutWatcher;
    if (m_waited >= limit && m_xembedTray && m_xembedTray->isThere())
        finish(StatusBar::Older);
}

void StatusNotifierSearch::finish(StatusBar statusBar)
{
    if (!std::exchange(m_isFound, true))
        Q_EMIT found(statusBar);
}
