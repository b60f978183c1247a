// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

/// The desktop's list of recent documents, `recently-used.xbel`, which programs on all desktops
/// write. Any thread; blocks on the disk.
namespace RecentDocuments
{

/// Each file's new path, by its previous one.
using Moves = QHash<QString, QString>;

/// The list's text with the entries of these files under their new paths. When the new path already
/// has an entry, the old one is dropped. Everything else stays as it is, byte for byte.
QByteArray moved(const QByteArray &list, const Moves &moves);

/// Does that to the user's list in one atomic step. A path where another file is by now keeps its
/// entry. Does nothing when there is no list, or when something else is in its place.
void move(const Moves &moves);

} // namespace RecentDocuments
