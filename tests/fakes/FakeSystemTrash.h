// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"
#include "filesystem/moveFile.h"
#include "platform/SystemTrash.h"

#include <QTemporaryDir>

/// A trash in a folder of its own that can be made to refuse, or not to report where a file went.
class FakeSystemTrash : public SystemTrash
{
public:
    std::error_code refusal;
    bool isSilent = false;

    Trashed trash(const QUrl &file) override
    {
        if (refusal)
            return {refusal, std::nullopt};
        if (isSilent)
            return {};
        const QUrl folder = FileUrls::fromPath(m_folder.path());
        QUrl location = FileUrls::child(folder, FileUrls::lastPathComponent(file));
        for (int counter = 2; FileUrls::exists(location); ++counter)
            location = FileUrls::numbered(
                FileUrls::child(folder, FileUrls::lastPathComponent(file)), counter);
        const std::error_code error = moveFile(file, location);
        return {error, error ? std::nullopt : std::optional(location)};
    }

    std::error_code restore(const QUrl &trashed, const QUrl &original) override
    {
        return refusal ? refusal : moveFile(trashed, original);
    }

private:
    QTemporaryDir m_folder;
};
