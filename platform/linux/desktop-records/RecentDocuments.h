// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

/// The desktop's list of recent documents, `recently-used.xbel`, which the programs of all desktops
/// write. Any thread; blocks for the disk.
namespace RecentDocuments
{

/// Each file's place, by the one that it had before.
using Moves = QHash<QString, QString>;

/// The text of the list with the entries of these files under their new places. Where an entry of
/// the new place is there already, the old one is left out. Everything else stays as it is, byte
/// for byte.
QByteArray moved(const QByteArray &list, const Moves &moves);

/// Does that to the user's list, in one step that others see whole or not at all. A place where
/// another file stands by now keeps its entry. Nothing where there is no list, or something else in
/// its place.
void move(const Moves &moves);

} // namespace RecentDocuments
