// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <memory>

/// The desktop's file manager. Main thread; returns at once.
class FileBrowser
{
public:
    virtual ~FileBrowser() = default;

    /// Opens the folder of the file and selects the file there; a file that is gone opens the
    /// folder alone. Failures are silent.
    virtual void reveal(const QUrl &file) = 0;
};

std::unique_ptr<FileBrowser> makeFileBrowser();
