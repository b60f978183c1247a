#include "imaging/decodePng.h"

#include "tests/imaging/TestPictures.h"

#include <QColorSpace>
#include <QRandomGenerator>
#include <QTest>

using namespace TestPictures;

namespace
{

constexpr qint64 manyPixels = 10'000'000;

const QByteArray rgb("\x08\x02\0\0\0", 5);
const QByteArray rgba("\x08\x06\0\0\0", 5);

/// Stored rows with every filter: half of the differences are none, as on a screen's plain parts.
QByteArray randomRows(QSize size, int channels, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray rows;
    for (int y = 0; y < size.height(); ++y) {
        rows.append(char(random.bounded(5)));
        for (int x = 0; x < size.width(); ++x) {
            const bool plain = random.bounded(2) == 0;
            for (int channel = 0; channel < channels; ++channel)
                rows.append(plain ? '\0' : char(random.bounded(256)));
        }
    }
    return rows;
}

/// The same stream in many small chunks, as some programs write it.
QByteArray inSmallChunks(const QByteArray &rows)
{
    const QByteArray stream = qCompress(rows).mid(4);
    QByteArray chunks;
    for (qsizetype at = 0; at < stream.size(); at += 97)
        chunks += pngChunk("IDAT", stream.mid(at, 97));
    return chunks;
}

bool samePixels(const QImage &one, const QImage &other)
{
    const auto pixels = [](QImage image) {
        image.setColorSpace({});
        return image.convertToFormat(QImage::Format_ARGB32);
    };
    return !one.isNull() && pixels(one) == pixels(other);
}

} // namespace

class DecodePngTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsAreThoseOfQtsReader_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("channels");
        // The last one's memory is in large pages.
        for (const QSize size : {QSize(1, 1), QSize(1, 40), QSize(40, 1), QSize(2, 3),
                                 QSize(17, 64), QSize(333, 257), QSize(1700, 1000)}) {
            for (const int channels : {3, 4})
                QTest::addRow("%dx%d, %d", size.width(), size.height(), channels)
                    << size << channels;
        }
    }
    void pixelsAreThoseOfQtsReader()
    {
        QFETCH(QSize, size);
        QFETCH(int, channels);
        const QByteArray header =
            pngHeader(quint32(size.width()), quint32(size.height()), channels == 4 ? rgba : rgb);
        for (quint32 seed = 1; seed <= (size.height() > 500 ? 1 : 20); ++seed) {
            const QByteArray rows = randomRows(size, channels, seed);
            const QByteArray file = pngFile(header + inSmallChunks(rows));
            const QImage read = decodePlainPng(file, manyPixels);
            QVERIFY(samePixels(read, QImage::fromData(file, "png")));
            QVERIFY(decodePlainPng(pngFile(header + pngData(rows)), manyPixels) == read);
        }
    }

    void whatQtWritesIsRead()
    {
        const QImage noisy = noise({123, 45});
        QCOMPARE(decodePlainPng(encoded(noisy, QStringLiteral("png")), manyPixels), noisy);
    }

    void anAlphaChannelThatIsOpaqueThroughoutIsLeftOut()
    {
        QImage image(8, 8, QImage::Format_ARGB32);
        image.fill(Qt::red);
        const auto read = [&] {
            return decodePlainPng(encoded(image, QStringLiteral("png")), manyPixels);
        };
        QCOMPARE(read().format(), QImage::Format_RGB32);
        image.setPixelColor(7, 7, QColor(0, 0, 255, 254));
        QCOMPARE(read().format(), QImage::Format_ARGB32);
        QCOMPARE(read().pixelColor(7, 7), QColor(0, 0, 255, 254));
    }

    void otherKindsAreLeftToOthers_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::newRow("grey") << QByteArray("\x08\0\0\0\0", 5);
        QTest::newRow("palette") << QByteArray("\x08\x03\0\0\0", 5);
        QTest::newRow("grey with alpha") << QByteArray("\x08\x04\0\0\0", 5);
        QTest::newRow("16 bits a channel") << QByteArray("\x10\x02\0\0\0", 5);
        QTest::newRow("unknown compression") << QByteArray("\x08\x02\x01\0\0", 5);
        QTest::newRow("unknown filtering") << QByteArray("\x08\x02\0\x01\0", 5);
        QTest::newRow("interlaced") << QByteArray("\x08\x02\0\0\x01", 5);
    }
    void otherKindsAreLeftToOthers()
    {
        QFETCH(QByteArray, kind);
        const QByteArray data = pngData(randomRows({4, 4}, 3, 1));
        QVERIFY(!decodePlainPng(pngFile(pngHeader(4, 4, rgb) + data), manyPixels).isNull());
        QVERIFY(decodePlainPng(pngFile(pngHeader(4, 4, kind) + data), manyPixels).isNull());
    }

    void aTransparentColourIsLeftToOthers()
    {
        const QByteArray header = pngHeader(4, 4, rgb);
        const QByteArray data = pngData(randomRows({4, 4}, 3, 1));
        const QByteArray colour = pngChunk("tRNS", QByteArray(6, '\0'));
        QVERIFY(decodePlainPng(pngFile(header + colour + data), manyPixels).isNull());
    }

    void unknownCriticalChunksAreLeftToOthers()
    {
        const QByteArray header = pngHeader(4, 4, rgb);
        const QByteArray data = pngData(randomRows({4, 4}, 3, 1));
        const QByteArray harmless = pngChunk("teXt", "what nobody must know");
        QVERIFY(!decodePlainPng(pngFile(header + harmless + data), manyPixels).isNull());
        for (const QByteArray &chunk : {pngChunk("TEXT", {}), pngChunk("PLTE", "ab"), header})
            QVERIFY(decodePlainPng(pngFile(header + chunk + data), manyPixels).isNull());
    }

    void moreThanAsManyPixelsAreRefused()
    {
        const QByteArray file =
            pngFile(pngHeader(10, 10, rgb) + pngData(randomRows({10, 10}, 3, 1)));
        QVERIFY(!decodePlainPng(file, 100).isNull());
        QVERIFY(decodePlainPng(file, 99).isNull());
    }

    void brokenFilesAreLeftToOthers()
    {
        const QByteArray header = pngHeader(10, 10, rgb);
        const QByteArray rows = randomRows({10, 10}, 3, 1);
        const QByteArray file = pngFile(header + pngData(rows));
        for (qsizetype length = 0; length < file.size(); ++length)
            QVERIFY(decodePlainPng(file.first(length), manyPixels).isNull());
        // Every byte is of the signature or of a checksum, or is under one.
        for (qsizetype at = 0; at < file.size(); ++at) {
            QByteArray damaged = file;
            damaged[at] = char(damaged[at] ^ 0x10);
            QVERIFY2(decodePlainPng(damaged, manyPixels).isNull(), qPrintable(QString::number(at)));
        }
        QByteArray unknownFilter = rows;
        unknownFilter[0] = 5;
        const QByteArray tooFew = rows.chopped(1);
        const QByteArray tooMany = rows + '\0';
        for (const QByteArray &wrong : {unknownFilter, tooFew, tooMany})
            QVERIFY(decodePlainPng(pngFile(header + pngData(wrong)), manyPixels).isNull());
        QVERIFY(decodePlainPng(pngFile(header), manyPixels).isNull());
        QVERIFY(decodePlainPng(pngFile(pngData(rows)), manyPixels).isNull());
    }
};

QTEST_APPLESS_MAIN(DecodePngTest)
#include "DecodePngTest.moc"
