// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopSearch.h"
#include "platform/linux/desktop-search/BusImage.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

/// The results that the desktop was given, so that it can ask for more by an identifier, and so
/// that an identifier can open nothing else. Main thread.
class FoundResults : public QObject
{
    Q_OBJECT
public:
    explicit FoundResults(DesktopSearch::Source source) : m_source(std::move(source)) {}

    struct Result {
        QString id;
        DesktopSearch::Result found;
        BusImage thumbnail; ///< empty when there is none, or none in time
    };
    using Answer = std::function<void(const QList<Result> &)>;

    /// Best first, at most ten, without thumbnails.
    void find(const QString &words, const Answer &answer);

    /// The known ones among these identifiers, in this order, with thumbnails. Pictures that take
    /// longer than a desktop likes to wait are left out.
    void describe(const QStringList &ids, const Answer &answer);

    /// Nothing for an identifier that was never given to the desktop.
    std::optional<QUrl> file(const QString &id) const;

private:
    struct Pictures;

    void remember(const DesktopSearch::Result &result);

    DesktopSearch::Source m_source;
    QHash<QString, DesktopSearch::Result> m_known;
    QStringList m_order; ///< the known identifiers, oldest first
    QHash<QString, BusImage> m_thumbnails;
};
