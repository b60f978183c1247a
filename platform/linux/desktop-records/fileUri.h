// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The address of a local file, spelled as desktops spell it where they look files up by it. Any
/// thread.
QByteArray fileUri(const QString &path);
