// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <chrono>

/// A disk as slow as a test wants it, and a list of the calls that the main thread makes to all
/// disks.
///
/// The library `velmora_slow_disk` is loaded before the C library: a test that links with it, or a
/// program started with it in LD_PRELOAD, makes its file-system calls through it. Calls that the C
/// library makes for itself (inside opendir, say) are part of the one that was called.
///
/// A program takes its instructions from the environment, from its first call on:
///     SLOW_DISK_FOLDERS       paths, separated by colons
///     SLOW_DISK_MILLISECONDS  how much longer each call on something in these folders takes
///     SLOW_DISK_CALLS         only these calls take longer ("open,fsync"); all when unset
///     SLOW_DISK_REPORT        a file to which each call of the main thread is appended as a line
///                                                     "call path" at the moment when it is made
namespace SlowDisk
{

/// From now on each call on something in one of the folders takes this much longer.
/// @param calls the names of the calls, separated by commas, without "64"; all when empty
void slow(const QByteArrayList &folders, std::chrono::milliseconds each,
          const QByteArray &calls = {});

/// From now on nothing takes longer.
void fast();

/// Forgets the main thread's calls so far.
void startCounting();

/// The calls of the main thread since then, each as "call path". Left out are calls on "/proc",
/// "/sys", "/dev" and anything that is not a file, and the closing of files.
QByteArrayList mainThreadCalls();

/// The total delay of the main thread's calls since then.
std::chrono::milliseconds mainThreadDelay();

} // namespace SlowDisk
