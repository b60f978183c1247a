// SPDX-License-Identifier: MIT
#include "imaging/decodePng.h"

#include "imaging/PictureSink.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QBuffer>
#include <QColorSpace>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace TestPictures;

namespace
{

constexpr PictureLimits wholePictures{10'000'000, 10'000'000};

/// A kind of PNG: the end of its header, and how it stores a pixel.
struct Kind {
    const char *name;
    QByteArray ending;
    int bitsPerPixel;

    bool isInterlaced() const { return ending.back() == '\1'; }
};

const QList<Kind> kinds = {
    {"grey of 1 bit", QByteArray("\x01\0\0\0\0", 5), 1},
    {"grey of 4 bits", QByteArray("\x04\0\0\0\0", 5), 4},
    {"grey", QByteArray("\x08\0\0\0\0", 5), 8},
    {"grey of 16 bits", QByteArray("\x10\0\0\0\0", 5), 16},
    {"palette of 2 bits", QByteArray("\x02\x03\0\0\0", 5), 2},
    {"palette", QByteArray("\x08\x03\0\0\0", 5), 8},
    {"grey and alpha", QByteArray("\x08\x04\0\0\0", 5), 16},
    {"colours", QByteArray("\x08\x02\0\0\0", 5), 24},
    {"colours and alpha", QByteArray("\x08\x06\0\0\0", 5), 32},
    {"colours of 16 bits", QByteArray("\x10\x02\0\0\0", 5), 48},
    {"colours and alpha of 16 bits", QByteArray("\x10\x06\0\0\0", 5), 64},
    {"interlaced colours", QByteArray("\x08\x02\0\0\x01", 5), 24},
    {"interlaced, 16 bits", QByteArray("\x10\x06\0\0\x01", 5), 64},
};

/// Stored rows with every filter.
QByteArray randomRows(QSize size, int bitsPerPixel, QRandomGenerator &random)
{
    QByteArray rows;
    if (size.isEmpty())
        return rows;
    for (int y = 0; y < size.height(); ++y) {
        rows.append(char(random.bounded(5)));
        for (int byte = 0; byte < (size.width() * bitsPerPixel + 7) / 8; ++byte)
            rows.append(random.bounded(2) == 0 ? '\0' : char(random.bounded(256)));
    }
    return rows;
}

/// The seven passes of an interlaced picture, one after the other.
QByteArray randomPasses(QSize size, int bitsPerPixel, QRandomGenerator &random)
{
    struct Pass {
        int x, y, stepX, stepY;
    };
    constexpr std::array passes = {Pass{0, 0, 8, 8}, Pass{4, 0, 8, 8}, Pass{0, 4, 4, 8},
                                   Pass{2, 0, 4, 4}, Pass{0, 2, 2, 4}, Pass{1, 0, 2, 2},
                                   Pass{0, 1, 1, 2}};
    QByteArray rows;
    for (const Pass &pass : passes) {
        const QSize part((size.width() - pass.x + pass.stepX - 1) / pass.stepX,
                         (size.height() - pass.y + pass.stepY - 1) / pass.stepY);
        rows += randomRows(part, bitsPerPixel, random);
    }
    return rows;
}

QByteArray randomFile(QSize size, const Kind &kind, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray palette;
    for (int entry = 0; entry < 3 * 256; ++entry)
        palette.append(char(random.bounded(256)));
    const bool hasPalette = kind.ending.at(1) == 3;
    const int colours = 1 << std::min(8, kind.bitsPerPixel);
    const QByteArray rows = kind.isInterlaced() ? randomPasses(size, kind.bitsPerPixel, random)
                                                : randomRows(size, kind.bitsPerPixel, random);
    return pngFile(pngHeader(quint32(size.width()), quint32(size.height()), kind.ending) +
                   (hasPalette ? pngChunk("PLTE", palette.first(3 * colours)) : QByteArray()) +
                   pngData(rows));
}

QImage decoded(const QByteArray &bytes, const PictureLimits &limits = wholePictures)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QBuffer::ReadOnly);
    PictureSink sink(limits, std::make_shared<PictureBudget>(100'000'000));
    return decodePng(file, sink) ? sink.takePicture().overview : QImage();
}

/// The largest difference between the channels of two pictures; 256 when the sizes differ.
int difference(const QImage &one, const QImage &other)
{
    if (one.isNull() || one.size() != other.size())
        return 256;
    int most = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            most = std::max({most, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                             std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
        }
    }
    return most;
}

/// The pixels as another reader decodes them, over black where they are transparent.
QImage byQt(const QByteArray &bytes)
{
    QImage image = QImage::fromData(bytes, "png");
    image.setColorSpace({});
    return image.convertToFormat(QImage::Format_ARGB32)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class DecodePngTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsOfEveryKindAreThoseOfAnotherReader_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QSize>("size");
        for (int kind = 0; kind < kinds.size(); ++kind) {
            for (const QSize size : {QSize(1, 1), QSize(1, 40), QSize(40, 1), QSize(17, 64)})
                QTest::addRow("%s, %dx%d", kinds.at(kind).name, size.width(), size.height())
                    << kind << size;
        }
    }
    void pixelsOfEveryKindAreThoseOfAnotherReader()
    {
        QFETCH(int, kind);
        QFETCH(QSize, size);
        for (quint32 seed = 1; seed <= 10; ++seed) {
            const QByteArray file = randomFile(size, kinds.at(kind), seed);
            // There are two ways to round 16 bits to 8.
            const int allowed = kinds.at(kind).ending.at(0) == 16 ? 1 : 0;
            QImage read = decoded(file);
            read.reinterpretAsFormat(QImage::Format_ARGB32);
            QImage expected = byQt(file);
            expected.reinterpretAsFormat(QImage::Format_ARGB32);
            QVERIFY(difference(read, expected) <= allowed);
        }
    }

    void aPictureOfManyChunksIsRead()
    {
        const QSize size(90, 70);
        QRandomGenerator random(1);
        const QByteArray stream = qCompress(randomRows(size, 24, random)).mid(4);
        QByteArray chunks;
        for (qsizetype at = 0; at < stream.size(); at += 97)
            chunks += pngChunk("IDAT", stream.mid(at, 97));
        const QByteArray file =
            pngFile(pngHeader(90, 70, QByteArray("\x08\x02\0\0\0", 5)) + chunks);
        QCOMPARE(decoded(file), byQt(file).convertToFormat(QImage::Format_RGB32));
    }

    void aTransparentColourIsSeen()
    {
        const QByteArray header = pngHeader(1, 1, QByteArray("\x08\x02\0\0\0", 5));
        const QByteArray colour = pngChunk("tRNS", QByteArray("\0\1\0\2\0\3", 6));
        const QByteArray data = pngData(QByteArray("\0\1\2\3", 4));
        QCOMPARE(decoded(pngFile(header + data)).pixelColor(0, 0), QColor(1, 2, 3));
        QCOMPARE(decoded(pngFile(header + colour + data)).pixelColor(0, 0).alpha(), 0);
    }

    void anAlphaChannelThatIsOpaqueThroughoutIsLeftOut()
    {
        QImage image(8, 8, QImage::Format_ARGB32);
        image.fill(Qt::red);
        const auto read = [&] { return decoded(encoded(image, u"png"_s)); };
        QCOMPARE(read().format(), QImage::Format_RGB32);
        image.setPixelColor(7, 7, QColor(0, 0, 255, 254));
        QCOMPARE(read().format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(read().pixelColor(7, 7), QColor(0, 0, 255, 254));
    }

    void ofAHugePictureTheOverviewIsHeld()
    {
        const QByteArray file = encoded(fourFields({300, 200}), u"png"_s);
        const QImage overview = decoded(file, {0, 1000});
        QVERIFY(overview.width() * overview.height() <= 1000);
        QVERIFY(lookAlike(overview, fourFields(overview.size())));
    }

    void aBrokenFileIsNoPicture()
    {
        const QByteArray file = randomFile({10, 10}, {"", QByteArray("\x08\x02\0\0\0", 5), 24}, 1);
        QVERIFY(!decoded(file).isNull());
        for (qsizetype length = 0; length < file.size(); ++length)
            QVERIFY2(decoded(file.first(length)).isNull(), qPrintable(QString::number(length)));
        // Every byte belongs to the signature or to a checksum, or is covered by one.
        for (qsizetype at = 0; at < file.size(); ++at) {
            QByteArray damaged = file;
            damaged[at] = char(damaged[at] ^ 0x10);
            QVERIFY2(decoded(damaged).isNull(), qPrintable(QString::number(at)));
        }
    }
};

VELMORA_PLAIN_TEST(DecodePngTest)
#include "DecodePngTest.moc"
