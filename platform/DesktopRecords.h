// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <memory>

/// What the desktop records about files by their paths: its list of recent documents and its cache
/// of thumbnails. Call it for what this program does to a screenshot. Main thread; never waits.
class DesktopRecords
{
public:
    virtual ~DesktopRecords() = default;

    /// The file is now at `to`. Records about `from` move with it, even those that another program
    /// writes a moment later.
    virtual void fileMoved(const QUrl &from, const QUrl &to) = 0;

    /// The file was moved to the trash.
    virtual void fileTrashed(const QUrl &from) = 0;
};

std::unique_ptr<DesktopRecords> makeDesktopRecords();
