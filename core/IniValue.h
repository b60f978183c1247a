// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVariant>

/// What stands behind the "=" in a settings file in the format of QSettings.
namespace IniValue
{

/// A string or a list of strings; invalid for what only QSettings understands.
QVariant read(const QByteArray &text);

QByteArray write(const QVariant &value);

} // namespace IniValue
