// SPDX-License-Identifier: MIT
#include "files/moveToFreeName.h"

#include "filesystem/FileUrls.h"
#include "filesystem/moveFile.h"

MovedFile moveToFreeName(const QUrl &source, const QUrl &wanted)
{
    QUrl candidate = wanted;
    for (int counter = 2;; ++counter) {
        // Do not copy to another file system if the name is already taken.
        const std::error_code error = FileUrls::exists(candidate)
                                          ? std::make_error_code(std::errc::file_exists)
                                          : moveFile(source, candidate);
        if (error != std::errc::file_exists)
            return {error, error ? source : candidate};
        candidate = FileUrls::numbered(wanted, counter);
    }
}
