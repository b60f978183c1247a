// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopSearch.h"
#include "platform/linux/desktop-search/BusImage.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

/// What the desktop has been told of, so that it can ask for more by an identifier, and so that
/// nothing else can be opened by one. Main thread.
class FoundResults : public QObject
{
    Q_OBJECT
public:
    explicit FoundResults(DesktopSearch::Source source) : m_source(std::move(source)) {}

    struct Result {
        QString id;
        DesktopSearch::Result found;
        BusImage thumbnail; ///< empty where there is none, or none in time
    };
    using Answer = std::function<void(const QList<Result> &)>;

    /// Best first, at most ten, without thumbnails.
    void find(const QString &words, const Answer &answer);

    /// Those of these identifiers that are known, with thumbnails, in this order. Pictures that
    /// take longer than a desktop likes to wait are left out.
    void describe(const QStringList &ids, const Answer &answer);

    /// Nothing for an identifier that was not given out.
    std::optional<QUrl> file(const QString &id) const;

private:
    struct Pictures;

    void remember(const DesktopSearch::Result &result);

    DesktopSearch::Source m_source;
    QHash<QString, DesktopSearch::Result> m_known;
    QStringList m_order; ///< of the known ones, oldest first
    QHash<QString, BusImage> m_thumbnails;
};
