// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Whether inotify reports every change in the folder, because this machine makes all of them and
/// an entry has only one name. True for the local file systems that we know; false for network and
/// user-space ones, for folders that accept two spellings of one name, and for everything unknown.
/// Any thread; blocks on the file system.
bool reportsEveryChange(const QByteArray &folder);
