// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/LaunchToken.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>

/// Keeps to one instance by owning a name on the session bus, and offers
/// `org.freedesktop.Application` there. Main thread.
class ApplicationOnBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    enum class Claim {
        Ours,       ///< this object owns the name until it is destroyed
        Theirs,     ///< another process owns it and was asked to come to the front
        Impossible, ///< there is no session bus
    };

    ApplicationOnBus();

    /// Leaves the name to the next process. The program may need seconds more to end, until a
    /// clipboard manager has what was copied.
    ~ApplicationOnBus() override;

    /// Blocks for two seconds at most when the other process does not answer. That process is then
    /// taken to be busy, because the bus would know if it had died; it gets the message later.
    Claim claim(const LaunchToken &token);

public Q_SLOTS:
    // Called by other programs. An unknown action gets an error reply.
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameters,
                                     const QVariantMap &platformData);

Q_SIGNALS:
    void activated(const LaunchToken &token);
    void actionActivated(const QString &name, const LaunchToken &token);

private:
    QDBusConnection m_bus;
    bool m_ownsName = false;
};
