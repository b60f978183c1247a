// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/desktop-search/FoundResults.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// Answers GNOME Shell when the user types in its overview. Main thread.
class GnomeSearchProvider : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")
public:
    explicit GnomeSearchProvider(FoundResults &results);

public Q_SLOTS:
    // Called by the shell, which gets the answers later.
    Q_SCRIPTABLE QStringList GetInitialResultSet(const QStringList &terms);
    Q_SCRIPTABLE QStringList GetSubsearchResultSet(const QStringList &previousResults,
                                                   const QStringList &terms);
    Q_SCRIPTABLE QList<QVariantMap> GetResultMetas(const QStringList &identifiers);
    Q_SCRIPTABLE void ActivateResult(const QString &identifier, const QStringList &terms,
                                     uint timestamp);
    Q_SCRIPTABLE void LaunchSearch(const QStringList &terms, uint timestamp);

Q_SIGNALS:
    void openRequested(const QUrl &file);
    void searchRequested(const QString &words);

private:
    FoundResults &m_results;
};
