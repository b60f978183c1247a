// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileBrowser.h"

#include <QList>

/// Records what it is asked to reveal, and starts no file manager.
class FakeFileBrowser : public FileBrowser
{
public:
    void reveal(const QUrl &file) override { revealed.append(file); }

    QList<QUrl> revealed;
};
