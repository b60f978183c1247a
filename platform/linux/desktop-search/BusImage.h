// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QMetaType>

/// A picture in the format of the desktops' search interfaces: rows of red, green, blue and alpha,
/// "(iiibiiay)" on the bus.
struct BusImage {
    int width = 0;
    int height = 0;
    int bytesPerLine = 0;
    bool hasAlpha = true;
    int bitsPerSample = 8;
    int channels = 4;
    QByteArray pixels;

    bool isEmpty() const { return pixels.isEmpty(); }

    static BusImage of(const QImage &image);
};
Q_DECLARE_METATYPE(BusImage)

QDBusArgument &operator<<(QDBusArgument &argument, const BusImage &image);
const QDBusArgument &operator>>(const QDBusArgument &argument, BusImage &image);
