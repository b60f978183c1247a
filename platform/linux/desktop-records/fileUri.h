// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// The URI of a local file, encoded the way desktops do when they look up files by it. Any thread.
QByteArray fileUri(const QString &path);
