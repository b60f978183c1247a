// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Whether every change in the folder is made by this machine and has one name, so that inotify
/// tells of it: true for the local file systems that we know, false for network and user-space
/// ones, for folders that take two spellings for one name, and for all that is unknown. Any
/// thread; blocks for the file system.
bool tellsEveryChange(const QByteArray &folder);
