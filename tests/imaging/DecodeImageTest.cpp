// SPDX-License-Identifier: MIT
#include "imaging/decodeImage.h"

#include "filesystem/OpenFile.h"
#include "tests/imaging/PeakMemory.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TestPictures;

namespace
{

/// Memory that is not a picture's: loaded code, small data of the libraries.
constexpr qint64 slack = 30'000'000;

} // namespace

class DecodeImageTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }

    QImage decoded(const QByteArray &bytes) const
    {
        return write(path(u"picture"_s), bytes) ? decodeImage(url(u"picture"_s)) : QImage();
    }

    static void addFormats()
    {
        QTest::addColumn<QString>("format");
        for (const char *format : {"png", "jpeg", "tiff", "heic", "webp"})
            QTest::newRow(format) << QString::fromLatin1(format);
    }

private Q_SLOTS:
    void everyFormatIsKnownByItsContentAndNotByItsName_data() { addFormats(); }
    void everyFormatIsKnownByItsContentAndNotByItsName()
    {
        QFETCH(QString, format);
        const QImage original = fourFields({64, 48});
        const QByteArray bytes = encoded(original, format);
        QVERIFY(!bytes.isEmpty());
        const QString wrongExtension = format == "png"_L1 ? u"a.jpg"_s : u"a.png"_s;
        for (const QString &name : {wrongExtension, u"no extension"_s}) {
            QVERIFY(write(path(name), bytes));
            QVERIFY(lookAlike(decodeImage(url(name)), original));
        }
    }

    void aPictureThatIsCutShortIsNoPicture_data() { addFormats(); }
    void aPictureThatIsCutShortIsNoPicture()
    {
        QFETCH(QString, format);
        const QByteArray bytes = encoded(noise({96, 64}), format);
        QVERIFY(!decoded(bytes).isNull());
        for (int tenth = 0; tenth < 10; ++tenth)
            QVERIFY2(decoded(bytes.left(bytes.size() * tenth / 10)).isNull(),
                     qPrintable(QString::number(tenth)));
        QVERIFY(decoded(bytes.chopped(32)).isNull());
    }

    void aDamagedPictureDoesNoHarm_data() { addFormats(); }
    void aDamagedPictureDoesNoHarm()
    {
        QFETCH(QString, format);
        const QByteArray bytes = encoded(fourFields({48, 32}), format);
        QRandomGenerator random(7);
        for (int round = 0; round < 100; ++round) {
            QByteArray damaged = bytes;
            for (int blow = 0; blow < 3; ++blow)
                damaged[random.bounded(damaged.size())] = char(random.bounded(256));
            const QImage image = decoded(damaged);
            QVERIFY(qint64(image.width()) * image.height() <= maximumPastedPixels);
        }
    }

    void aPictureIsTurnedUpright_data()
    {
        QTest::addColumn<QString>("format");
        for (const char *format : {"jpeg", "tiff", "heic"})
            QTest::newRow(format) << QString::fromLatin1(format);
    }
    void aPictureIsTurnedUpright()
    {
        QFETCH(QString, format);
        const QImage upright = fourFields({96, 64});
        QVERIFY(lookAlike(decoded(encodedLying(upright, format)), upright));
    }

    void aFileThatClaimsAGiganticPictureIsRefused()
    {
        QVERIFY(decoded(pngThatClaims(60000, 60000)).isNull());
        QVERIFY(decoded(pngThatClaims(2'000'000'000, 1)).isNull());
    }

    void aFileOfTooManyBytesIsRefused()
    {
        QVERIFY(write(path(u"sparse"_s), encoded(fourFields({16, 16}), u"png"_s)));
        QVERIFY(QFile::resize(path(u"sparse"_s), maximumPictureFileSize + 1));
        QVERIFY(decodeImage(url(u"sparse"_s)).isNull());
        QVERIFY(write(path(u"sparse"_s), "no picture at all"));
        QVERIFY(QFile::resize(path(u"sparse"_s), 1'000'000'000'000));
        QVERIFY(decodeImage(url(u"sparse"_s)).isNull());
    }

    void aPictureOfMoreScreensThanAnybodyHasIsReadFromItsTopAndSeenWhole_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QSize>("size");
        for (const char *format : {"png", "jpeg", "tiff"}) {
            const QString name = QString::fromLatin1(format);
            QTest::addRow("a scrolling shot, %s", format) << name << QSize(1920, 34000);
            QTest::addRow("two 8K screens, %s", format) << name << QSize(15360, 4320);
        }
    }
    void aPictureOfMoreScreensThanAnybodyHasIsReadFromItsTopAndSeenWhole()
    {
        QFETCH(QString, format);
        QFETCH(QSize, size);
        QImage image(size, QImage::Format_Grayscale8);
        image.fill(Qt::black);
        std::memset(image.scanLine(size.height() / 2), 0xff,
                    size_t(image.bytesPerLine()) * size_t(size.height() / 2));
        QVERIFY(write(path(u"huge"_s), encoded(image, format)));
        image = {};
        const auto file = OpenFile::open(path(u"huge"_s));
        const auto budget = std::make_shared<PictureBudget>(PictureBudget::ofScreenshots);

        const qint64 before = PeakMemory::startCounting();
        const DecodedPicture picture = decodePicture(file->descriptor(), budget).picture;
        const qint64 most = PeakMemory::most() - before;

        QCOMPARE(picture.top.width(), size.width());
        QVERIFY(picture.top.height() >= 2500);
        QCOMPARE(picture.top.pixelColor(size.width() / 2, 100), QColor(Qt::black));
        const QImage overview = picture.overview;
        const double shape = double(overview.width()) / overview.height();
        QVERIFY(qAbs(shape / (double(size.width()) / size.height()) - 1) < 0.01);
        QCOMPARE(overview.pixelColor(overview.width() / 2, 1), QColor(Qt::black));
        QCOMPARE(overview.pixelColor(overview.width() / 2, overview.height() - 2),
                 QColor(Qt::white));
        if (PeakMemory::isMeasurable())
            QVERIFY2(most < PictureBudget::ofScreenshots + slack,
                     qPrintable(QString::number(most / 1'000'000)));
        const QImage pasted = decodeImage(QUrl::fromLocalFile(path(u"huge"_s)));
        QVERIFY(pasted.width() > size.width() / 3);
    }

    void aSmallFileDoesNotCostMuchMemoryWhateverItSays()
    {
        // Half a gigabyte in stored form.
        const QSize size(65'000, 984);
        const QByteArray row(1 + 8 * size.width(), '\0');
        const QByteArray file =
            pngFile(pngHeader(quint32(size.width()), quint32(size.height()),
                              QByteArray("\x10\x06\0\0\x01", 5)) +
                    pngData(row.repeated(size.height() + 2 * size.height() / 3)));
        QVERIFY(file.size() < 1'000'000);
        QVERIFY(write(path(u"hostile"_s), file));
        const auto open = OpenFile::open(path(u"hostile"_s));
        const auto budget = std::make_shared<PictureBudget>(PictureBudget::ofScreenshots);
        const qint64 before = PeakMemory::startCounting();
        decodePicture(open->descriptor(), budget);
        decodeImage(file);
        const qint64 most = PeakMemory::most() - before;
        if (PeakMemory::isMeasurable())
            QVERIFY2(most < PictureBudget::ofScreenshots + slack,
                     qPrintable(QString::number(most / 1'000'000)));
    }

    void aPictureWaitsForRoomInTheBudget()
    {
        QVERIFY(write(path(u"a.png"_s), encoded(fourFields({1000, 1000}), u"png"_s)));
        const auto file = OpenFile::open(path(u"a.png"_s));
        const auto budget = std::make_shared<PictureBudget>(PictureBudget::ofScreenshots);
        auto others = budget->reserve(budget->total() - 3'000'000);
        const Decoding refused = decodePicture(file->descriptor(), budget);
        QVERIFY(refused.picture.isNull());
        QVERIFY(refused.lackingBytes > 3'000'000);
        others.reset();
        Decoding done = decodePicture(file->descriptor(), budget);
        QVERIFY(lookAlike(done.picture.top, fourFields({1000, 1000})));
        QCOMPARE(done.lackingBytes, 0);
        QVERIFY(!budget->hasRoom(budget->total()));
        done = {};
        QVERIFY(budget->hasRoom(budget->total()));
    }

    void deepChannelsBecomeEightBits()
    {
        const QImage deep = fourFields({32, 32}).convertToFormat(QImage::Format_RGBA64);
        const QImage read = decoded(encoded(deep, u"png"_s));
        QVERIFY(read.depth() <= 32);
        QVERIFY(lookAlike(read, fourFields({32, 32})));
    }

    void transparencyStays()
    {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(QColor(255, 0, 0, 64));
        QCOMPARE(decoded(encoded(image, u"png"_s)).pixelColor(3, 3).alpha(), 64);
    }

    void whatIsNoPictureGivesNone()
    {
        QVERIFY(decoded({}).isNull());
        QVERIFY(decoded("Hello, I am a text.\n").isNull());
        QVERIFY(decoded("<svg xmlns='http://www.w3.org/2000/svg'/>").isNull());
        QVERIFY(decoded(QByteArray(4096, '\0')).isNull());
        QVERIFY(decoded("BM").isNull());
        QVERIFY(decoded("\xFF\xD8\xFF").isNull());
        QVERIFY(decodeImage(url(u"missing.png"_s)).isNull());
        QVERIFY(decodeImage(QUrl()).isNull());
        QVERIFY(decodeImage(-1).isNull());
    }

    void whatIsNoRegularFileIsNotRead()
    {
        QVERIFY(QDir(m_folder.path()).mkdir(u"folder.png"_s));
        QVERIFY(decodeImage(url(u"folder.png"_s)).isNull());
        const QString pipe = path(u"pipe.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(decodeImage(QUrl::fromLocalFile(pipe)).isNull());
        QVERIFY(decodeImage(QUrl::fromLocalFile(u"/dev/zero"_s)).isNull());
    }

    void aFileThatMayNotBeReadGivesNone()
    {
        const QString name = path(u"secret.png"_s);
        QVERIFY(write(name, encoded(fourFields({8, 8}), u"png"_s)));
        QVERIFY(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(name, {}));
        const uid_t user = ::geteuid();
        const uid_t nobody = 65534;
        if (user == 0)
            QCOMPARE(::seteuid(nobody), 0);
        const bool refused = decodeImage(QUrl::fromLocalFile(name)).isNull();
        QCOMPARE(::seteuid(user), 0);
        QVERIFY(refused);
    }

    void aDescriptorIsReadFromItsBeginningAndStaysOpen()
    {
        const QImage original = fourFields({32, 24});
        QVERIFY(write(path(u"a.png"_s), encoded(original, u"png"_s)));
        QFile file(path(u"a.png"_s));
        QVERIFY(file.open(QFile::ReadOnly | QFile::Unbuffered));
        QVERIFY(file.seek(20));
        QVERIFY(lookAlike(decodeImage(file.handle()), original));
        QVERIFY(lookAlike(decodeImage(file.handle()), original));
        QCOMPARE(file.pos(), 20);
        QCOMPARE(file.read(1).size(), 1);
    }
};

VELMORA_EVENTS_TEST(DecodeImageTest)
#include "DecodeImageTest.moc"
