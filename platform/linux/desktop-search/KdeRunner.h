// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/desktop-search/FoundResults.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

/// What KRunner gets of a result, "(sssida{sv})" on the bus.
struct RunnerMatch {
    QString id;
    QString text;
    QString icon;
    int kind = 0;
    double relevance = 0;
    QVariantMap properties;
};
Q_DECLARE_METATYPE(RunnerMatch)

/// An action for a result besides opening it, "(sss)" on the bus.
struct RunnerAction {
    QString id;
    QString text;
    QString icon;
};
Q_DECLARE_METATYPE(RunnerAction)

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match);
QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action);
const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action);

/// Answers KRunner and Plasma's menus when the user types in them. Main thread.
class KdeRunner : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")
public:
    explicit KdeRunner(FoundResults &results);

public Q_SLOTS:
    // Called by KRunner, which gets the answers later.
    Q_SCRIPTABLE QList<RunnerAction> Actions();
    Q_SCRIPTABLE QList<RunnerMatch> Match(const QString &query);
    Q_SCRIPTABLE void Run(const QString &matchId, const QString &actionId);

Q_SIGNALS:
    void openRequested(const QUrl &file);
    void revealRequested(const QUrl &file);

private:
    FoundResults &m_results;
};
