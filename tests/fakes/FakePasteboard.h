// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DraggedFile.h"
#include "platform/Pasteboard.h"

/// A clipboard in memory that can be made to refuse.
class FakePasteboard : public Pasteboard
{
public:
    bool refuses = false;
    int changes = 0;
    std::optional<PasteboardContents> contents;

    void clear() override
    {
        ++changes;
        contents.reset();
    }

    bool write(PasteboardContents written) override
    {
        ++changes;
        contents.reset();
        if (!refuses)
            contents = std::move(written);
        return !refuses;
    }

    std::unique_ptr<DraggedFile> drag(const QUrl &file) override
    {
        return std::make_unique<DraggedFile>(file);
    }

    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        if (contents && contents->file == from)
            contents->file = to;
    }
};
