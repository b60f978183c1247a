// SPDX-License-Identifier: MIT
// Compares our decoding time with that of Qt's reader, warm, from the file's bytes in memory to the
// picture.
//
// usage: decode_bench FILE...
//
// Prints one line per picture (tab-separated: file, our milliseconds, Qt's milliseconds), the best
// of several rounds; at the end both sums and their ratio. Exits with 1 when a picture can't be
// decoded or the pixels differ.

#include "imaging/decodeImage.h"

#include <QBuffer>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace
{

constexpr int rounds = 9;

QImage decodedByQt(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    return reader.read();
}

struct Measured {
    QImage picture;
    double milliseconds = std::numeric_limits<double>::max();
};

template <typename Decode>
void measure(const Decode &decode, Measured &best)
{
    QElapsedTimer timer;
    timer.start();
    QImage picture = decode();
    best.milliseconds = std::min(best.milliseconds, double(timer.nsecsElapsed()) / 1e6);
    best.picture = std::move(picture);
}

QImage pixelsOf(QImage image)
{
    image.setColorSpace({});
    return image.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

int main(int argc, char **argv)
{
    double ours = 0;
    double qts = 0;
    bool same = true;
    for (int i = 1; i < argc; ++i) {
        QFile file(QString::fromLocal8Bit(argv[i]));
        const QByteArray bytes = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
        Measured our;
        Measured qt;
        for (int round = 0; round < rounds; ++round) {
            measure([&] { return decodeImage(bytes); }, our);
            measure([&] { return decodedByQt(bytes); }, qt);
        }
        std::printf("%s\t%.2f\t%.2f\n", qPrintable(QFileInfo(file).fileName()), our.milliseconds,
                    qt.milliseconds);
        ours += our.milliseconds;
        qts += qt.milliseconds;
        same = same && !our.picture.isNull() && pixelsOf(our.picture) == pixelsOf(qt.picture);
    }
    if (ours > 0)
        std::printf("all\t%.1f\t%.1f\tratio 1/%.2f\n", ours, qts, qts / ours);
    return same ? 0 : 1;
}
