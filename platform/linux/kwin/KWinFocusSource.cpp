// SPDX-License-Identifier: MIT
#include "platform/linux/kwin/KWinFocusSource.h"

#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

QString kwin()
{
    return u"org.kde.KWin"_s;
}

QString scriptName()
{
    return u"app.velmora.Velmora.focus"_s;
}

QString objectPath()
{
    return u"/app/velmora/Velmora/Focus"_s;
}

/// Plasma 6 and Plasma 5 use different names. Everything is sent as text, because the properties'
/// types of numbers and bytes differ too.
constexpr char scriptText[] = R"js(
function report(window) {
    const kind = !window ? "none"
        : window.dock || window.desktopWindow || window.notification ? "shell" : "window";
    const text = name => window && window[name] !== undefined ? String(window[name]) : "";
    callDBus("%1", "%2", "app.velmora.Velmora.Focus", "Focus", text("resourceName"),
             text("resourceClass"), text("desktopFileName"), text("pid"), kind);
}
if (workspace.windowActivated) {
    workspace.windowActivated.connect(report);
    report(workspace.activeWindow);
} else {
    workspace.clientActivated.connect(report);
    report(workspace.activeClient);
}
)js";

} // namespace

KWinFocusSource::KWinFocusSource()
    : m_bus(QDBusConnection::sessionBus())
    , m_watcher(kwin(), m_bus, QDBusServiceWatcher::WatchForRegistration)
    , m_script(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
               u"/velmora-XXXXXX.js"_s)
{
    m_bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &KWinFocusSource::load);
    if (!m_script.open())
        return;
    m_script.write(QString::fromLatin1(scriptText).arg(m_bus.baseService(), objectPath()).toUtf8());
    m_script.flush();
    load();
}

KWinFocusSource::~KWinFocusSource()
{
    m_bus.send(scripting(u"unloadScript"_s) << scriptName());
    m_bus.unregisterObject(objectPath());
}

void KWinFocusSource::find(QObject *context, const std::function<void(bool)> &found)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << kwin();
    auto *watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, found] {
        watcher->deleteLater();
        found(watcher->reply().arguments().value(0).toBool());
    });
}

void KWinFocusSource::Focus(const QString &instance, const QString &windowClass,
                            const QString &desktopFile, const QString &processId,
                            const QString &kind)
{
    if (kind == u"none")
        return Q_EMIT focusChanged(std::nullopt);
    FocusedWindow window;
    window.instance = instance;
    window.windowClass = windowClass;
    window.notedIds = {desktopFile};
    window.processId = processId.toLongLong();
    window.isOrdinary = kind == u"window";
    Q_EMIT focusChanged(window);
}

/// A run that did not end cleanly may have left one with that name.
void KWinFocusSource::load()
{
    call(scripting(u"unloadScript"_s) << scriptName(), [this](const QDBusMessage &) {
        call(scripting(u"loadScript"_s) << m_script.fileName() << scriptName(),
             [this](const QDBusMessage &answer) { run(answer.arguments().value(0, -1).toInt()); });
    });
}

/// Plasma 6 and Plasma 5 have their scripts at different object paths.
void KWinFocusSource::run(int script)
{
    for (const QString &folder : {u"/Scripting/Script"_s, u"/"_s})
        m_bus.send(QDBusMessage::createMethodCall(kwin(), folder + QString::number(script),
                                                  u"org.kde.kwin.Script"_s, u"run"_s));
}

void KWinFocusSource::call(const QDBusMessage &message,
                           const std::function<void(const QDBusMessage &)> &answered)
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

QDBusMessage KWinFocusSource::scripting(const QString &method) const
{
    return QDBusMessage::createMethodCall(kwin(), u"/Scripting"_s, u"org.kde.kwin.Scripting"_s,
                                          method);
}
