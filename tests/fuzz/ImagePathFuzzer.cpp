// SPDX-License-Identifier: MIT
// What happens to a picture: it is decoded, its lines are found and read.

#include "imaging/decodeImage.h"
#include "recognition/engine/EnginePool.h"
#include "recognition/engine/LineReader.h"
#include "recognition/lines/LineFinder.h"
#include "recognition/lines/LinePieces.h"
#include "recognition/lines/PictureLevels.h"
#include "recognition/order/ReadingOrder.h"
#include "tests/fuzz/memoryFile.h"

#include <QCoreApplication>

#include <cstdint>

namespace
{

/// Reading is slow under the sanitizers: this many pieces of a picture are enough.
constexpr int piecesRead = 2;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    static Engine engine({});
    const QImage picture = opaquePicture(decodeImage(memoryFile(data, size).number()));
    if (picture.isNull())
        return 0;
    LineReader reader(engine, picture);
    int pieces = 0;
    const auto never = [] { return false; };
    for (const TextLine &line : inReadingOrder(findLines(picture, never))) {
        const auto onPiece = [&](const QString &) { return ++pieces < piecesRead; };
        if (!reader.read(line, onPiece, never))
            break;
    }
    return 0;
}
