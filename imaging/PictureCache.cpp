// SPDX-License-Identifier: MIT
#include "imaging/PictureCache.h"

#include <algorithm>

void PictureCache::insert(const FileIdentity &identity, const DecodedPicture &picture, Time now)
{
    m_entries.removeIf([&](const Entry &entry) { return entry.identity.sameFile(identity); });
    m_entries.prepend({identity, picture, now});
    dropSurplus();
}

DecodedPicture PictureCache::find(const FileIdentity &identity, Time now)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.identity.sameContent(identity);
    });
    if (found == m_entries.end())
        return {};
    found->lastUse = now;
    std::rotate(m_entries.begin(), found, found + 1);
    return m_entries.first().picture;
}

void PictureCache::dropUnused(Time now)
{
    m_entries.removeIf([&](const Entry &entry) { return now - entry.lastUse >= lifetime; });
}

void PictureCache::dropSurplus()
{
    qsizetype bytes = 0;
    qsizetype kept = 0;
    for (const Entry &entry : std::as_const(m_entries)) {
        bytes += entry.picture.sizeInBytes();
        if (kept > 0 && (kept == maximumPictures || bytes > maximumBytes))
            break;
        ++kept;
    }
    m_entries.resize(kept);
}
