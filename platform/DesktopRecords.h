// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <memory>

/// What the desktop remembers of files by their places: its list of recent documents, its cache of
/// thumbnails. It is told of what this program does to a screenshot. Main thread; never waits.
class DesktopRecords
{
public:
    virtual ~DesktopRecords() = default;

    /// The file stands at `to` now. What is remembered of `from` moves with it, also what another
    /// program notes a moment late.
    virtual void fileMoved(const QUrl &from, const QUrl &to) = 0;

    /// The file has left for the trash.
    virtual void fileTrashed(const QUrl &from) = 0;
};

std::unique_ptr<DesktopRecords> makeDesktopRecords();
