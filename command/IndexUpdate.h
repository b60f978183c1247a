// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchIndex.h"

#include <QByteArray>
#include <QList>

/// Passes the new names of files on to the search index, if there is one, a few at a time. If the
/// index is in use for too long, it learns them when Velmora looks at the folder the next time.
class IndexUpdate
{
public:
    IndexUpdate() = default;
    ~IndexUpdate();
    Q_DISABLE_COPY_MOVE(IndexUpdate)

    /// The file has this path now.
    void add(const QByteArray &path);

private:
    void store();

    SearchIndex m_index;
    QList<SearchIndex::Entry> m_moved;
};
