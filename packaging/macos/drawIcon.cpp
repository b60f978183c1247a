// SPDX-License-Identifier: MIT
#include "packaging/icons/drawPicture.h"

#include <QBuffer>
#include <QFile>
#include <QtEndian>

#include <array>

namespace
{

/// One picture of an icon file: its type, and its size in pixels. Some sizes come twice, since the
/// smaller one's picture for fine screens has as many pixels as the larger one's for others.
struct IconPicture {
    const char *type;
    int pixels;
};

constexpr std::array pictures = {
    IconPicture{"icp4", 16},   IconPicture{"icp5", 32},  IconPicture{"ic07", 128},
    IconPicture{"ic08", 256},  IconPicture{"ic09", 512}, IconPicture{"ic11", 32},
    IconPicture{"ic12", 64},   IconPicture{"ic13", 256}, IconPicture{"ic14", 512},
    IconPicture{"ic10", 1024},
};

constexpr int headerSize = 8;

QByteArray bigEndian(qsizetype number)
{
    QByteArray bytes(sizeof(quint32), '\0');
    qToBigEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

QByteArray block(const char *type, const QByteArray &content)
{
    return QByteArray(type) + bigEndian(content.size() + headerSize) + content;
}

QByteArray drawn(QSvgRenderer &drawing, int pixels)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    drawPicture(drawing, pixels).save(&buffer, "png");
    return bytes;
}

} // namespace

/// Draws a picture in SVG as an icon file in Apple's format, in all its sizes.
///
/// usage: draw_icon SVG ICNS
int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    QFile icon(QFile::decodeName(argv[2]));
    if (!drawing.isValid() || !icon.open(QIODevice::WriteOnly))
        return 1;
    QByteArray content;
    for (const IconPicture &picture : pictures)
        content += block(picture.type, drawn(drawing, picture.pixels));
    const QByteArray file = block("icns", content);
    return icon.write(file) == file.size() && icon.flush() ? 0 : 1;
}
