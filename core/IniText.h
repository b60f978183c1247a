// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

/// The values of a group of a settings file, in the form that QSettings gives such
/// files: a value is a string, or a list of strings. Values that can't be understood are left out.
///
/// QSettings itself reads and writes by path, and there it waits: for a pipe to be written, and for
/// a lock that may be anything and may have been left by anybody.
namespace IniText
{

QHash<QString, QVariant> values(const QByteArray &text, const QByteArray &group = "General");

/// The text with these values changed; an invalid one takes its key out. Everything else, comments
/// and other groups too, stays as it is. Keys are of letters, digits, "-" and "_".
QByteArray changed(const QByteArray &text, const QMap<QString, QVariant> &changes,
                   const QByteArray &group = "General");

} // namespace IniText
