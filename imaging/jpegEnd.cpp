#include "imaging/jpegEnd.h"

namespace
{

constexpr uchar markerPrefix = 0xFF;
constexpr uchar stuffedByte = 0x00;
constexpr uchar startOfImage = 0xD8;
constexpr uchar endOfImage = 0xD9;
constexpr uchar temporaryMarker = 0x01;

bool isRestart(uchar marker)
{
    return marker >= 0xD0 && marker <= 0xD7;
}

bool standsAlone(uchar marker)
{
    return isRestart(marker) || marker == temporaryMarker || marker == startOfImage;
}

uchar byteAt(QByteArrayView bytes, qsizetype position)
{
    return static_cast<uchar>(bytes.at(position));
}

/// The position of the next marker's code, or -1: skips the compressed data that follow a scan's
/// header, and stray bytes.
qsizetype nextMarker(QByteArrayView bytes, qsizetype position)
{
    for (;;) {
        position = bytes.indexOf(char(markerPrefix), position);
        if (position < 0 || position + 1 >= bytes.size())
            return -1;
        const uchar code = byteAt(bytes, ++position);
        if (code != stuffedByte && code != markerPrefix && !isRestart(code))
            return position;
    }
}

} // namespace

bool reachesJpegEnd(QByteArrayView bytes)
{
    qsizetype position = 0;
    while ((position = nextMarker(bytes, position)) >= 0) {
        const uchar code = byteAt(bytes, position++);
        if (code == endOfImage)
            return true;
        if (standsAlone(code))
            continue;
        if (position + 2 > bytes.size())
            return false;
        const int length = byteAt(bytes, position) * 256 + byteAt(bytes, position + 1);
        position += length;
        if (position > bytes.size())
            return false;
    }
    return false;
}
