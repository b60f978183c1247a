// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Picture files made to cost a decoder as much as possible, and some that are merely huge.
namespace HostilePictures
{

/// Writes them into the folder; each name describes its file. Takes half a minute.
QStringList write(const QString &folder);

} // namespace HostilePictures
