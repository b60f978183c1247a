// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <memory>

/// The desktop's file manager. Main thread; returns at once.
class FileBrowser
{
public:
    virtual ~FileBrowser() = default;

    /// Opens the file's folder and selects the file there; if the file is gone, only opens the
    /// folder. Failures are silent.
    virtual void reveal(const QUrl &file) = 0;
};

std::unique_ptr<FileBrowser> makeFileBrowser();
