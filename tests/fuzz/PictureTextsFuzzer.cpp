// SPDX-License-Identifier: MIT
// The texts in a picture file: never longer than promised, and without control characters.

#include "imaging/pictureTexts.h"
#include "tests/fuzz/memoryFile.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const PictureTexts texts = pictureTexts(memoryFile(data, size).number());
    for (const QString &text : {texts.windowTitle, texts.software}) {
        const bool isOneLine = std::none_of(text.cbegin(), text.cend(), [](QChar letter) {
            return letter.category() == QChar::Other_Control;
        });
        if (text.size() > longestPictureText || !isOneLine)
            std::abort();
    }
    return 0;
}
