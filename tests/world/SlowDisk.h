// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <chrono>

/// A disk as slow as a test wants it, and a list of what the main thread asks of all disks.
///
/// The library `velmora_slow_disk` stands before the C library: a test that links with it, or a
/// program that is started with it in LD_PRELOAD, makes its file-system calls through it. Calls
/// that the C library makes for itself (below opendir, say) are part of the one that was called.
///
/// A program is told by its environment, from its first call on:
///   SLOW_DISK_FOLDERS       paths, separated by colons
///   SLOW_DISK_MILLISECONDS  how much longer each call on something in these folders takes
///   SLOW_DISK_CALLS         only these calls take longer ("open,fsync"); all where unset
///   SLOW_DISK_REPORT        a file to which each call of the main thread is appended as a line
///                           "call path" at the moment at which it is made
namespace SlowDisk
{

/// From now on each call on something in one of the folders takes so much longer.
/// @param calls the names of the calls, separated by commas, without "64"; all where empty
void slow(const QByteArrayList &folders, std::chrono::milliseconds each,
          const QByteArray &calls = {});

/// Nothing takes longer any more.
void fast();

/// Forgets the calls that the main thread has made.
void startCounting();

/// The calls of the main thread since then, each as "call path". Those on "/proc", "/sys" and
/// "/dev" and on what is no file, and closing, are left out.
QByteArrayList mainThreadCalls();

/// By how much the calls of the main thread took longer since then.
std::chrono::milliseconds mainThreadDelay();

} // namespace SlowDisk
