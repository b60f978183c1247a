// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-search/BusImage.h"

BusImage BusImage::of(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGBA8888);
    BusImage made;
    made.width = plain.width();
    made.height = plain.height();
    made.bytesPerLine = int(plain.bytesPerLine());
    made.pixels = QByteArray(reinterpret_cast<const char *>(plain.constBits()),
                             qsizetype(plain.sizeInBytes()));
    return made;
}

QDBusArgument &operator<<(QDBusArgument &argument, const BusImage &image)
{
    argument.beginStructure();
    argument << image.width << image.height << image.bytesPerLine << image.hasAlpha
             << image.bitsPerSample << image.channels << image.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, BusImage &image)
{
    argument.beginStructure();
    argument >> image.width >> image.height >> image.bytesPerLine >> image.hasAlpha >>
        image.bitsPerSample >> image.channels >> image.pixels;
    argument.endStructure();
    return argument;
}
