// SPDX-License-Identifier: MIT
// libFuzzer's target for what happens to a picture: decode it, find its lines, read them.
//
// Built with clang by scripts/fuzz, which keeps its corpus and its findings in the build folder.

#include "imaging/decodeImage.h"
#include "recognition/engine/EnginePool.h"
#include "recognition/engine/LineReader.h"
#include "recognition/lines/LineFinder.h"
#include "recognition/lines/LinePieces.h"
#include "recognition/lines/PictureLevels.h"
#include "recognition/order/ReadingOrder.h"

#include <QCoreApplication>

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

/// Reading is slow under the sanitizers: this many pieces of a picture are enough.
constexpr int piecesRead = 2;

QImage decoded(const std::uint8_t *data, std::size_t size)
{
    const int file = ::memfd_create("picture", MFD_CLOEXEC);
    if (::write(file, data, size) != ::ssize_t(size))
        std::abort();
    const QImage image = decodeImage(file);
    ::close(file);
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    static Engine engine({});
    const QImage picture = opaquePicture(decoded(data, size));
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
