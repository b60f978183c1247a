// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusSource.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QTemporaryFile>

#include <functional>

/// The window that KWin calls active. A script in KWin reports each change over the session bus; it
/// is unloaded at the end, and loaded again when KWin restarts. Main thread.
class KWinFocusSource : public FocusSource
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.velmora.Velmora.Focus")
public:
    KWinFocusSource();
    ~KWinFocusSource() override;

    bool seesAllWindows() const override { return true; }
    void update() override {}

    /// Finds out whether KWin is running. Answers later, from the event loop, unless `context` is
    /// gone by then.
    static void find(QObject *context, const std::function<void(bool isThere)> &found);

public Q_SLOTS:
    /// Called by the script.
    Q_SCRIPTABLE void Focus(const QString &instance, const QString &windowClass,
                            const QString &desktopFile, const QString &processId,
                            const QString &kind);

private:
    void load();
    void run(int script);
    void call(const QDBusMessage &message,
              const std::function<void(const QDBusMessage &)> &answered);
    QDBusMessage scripting(const QString &method) const;

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QTemporaryFile m_script;
};
