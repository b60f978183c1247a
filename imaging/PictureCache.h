// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "imaging/DecodedPicture.h"

#include <QList>

#include <chrono>

/// The newest few decoded pictures, for a short while.
class PictureCache
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// How long a picture stays after its last use.
    static constexpr std::chrono::seconds lifetime{5};
    static constexpr qsizetype maximumPictures = 3;
    /// Only the newest picture may be larger.
    static constexpr qsizetype maximumBytes = 128'000'000;

    void insert(const FileIdentity &identity, const DecodedPicture &picture, Time now);

    /// The picture of this file in this state, or a null picture. Counts as a use.
    DecodedPicture find(const FileIdentity &identity, Time now);

    /// Drops the pictures that were not used for their lifetime.
    void dropUnused(Time now);

    void clear() { m_entries.clear(); }
    bool isEmpty() const { return m_entries.isEmpty(); }

private:
    struct Entry {
        FileIdentity identity;
        DecodedPicture picture;
        Time lastUse;
    };
    void dropSurplus();

    QList<Entry> m_entries; ///< the most recently used one first
};
