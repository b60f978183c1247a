// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

/// Reads and writes one group of a settings file in the format of QSettings. A value is a string or
/// a list of strings. Values that cannot be parsed are left out.
///
/// QSettings itself is not used because it opens files by path and can block there: on a pipe that
/// nobody writes to, or on a lock that is stale or not a file at all.
namespace IniText
{

QHash<QString, QVariant> values(const QByteArray &text, const QByteArray &group = "General");

/// The text with these values changed; an invalid value removes its key. Everything else, including
/// comments and other groups, is unchanged. Keys consist of letters, digits, "-" and "_".
QByteArray changed(const QByteArray &text, const QMap<QString, QVariant> &changes,
                   const QByteArray &group = "General");

} // namespace IniText
