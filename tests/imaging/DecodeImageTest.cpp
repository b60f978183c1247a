#include "imaging/decodeImage.h"

#include "tests/imaging/TestPictures.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace TestPictures;

class DecodeImageTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }

    QImage decoded(const QByteArray &bytes) const
    {
        return write(path(QStringLiteral("picture")), bytes)
                   ? decodeImage(url(QStringLiteral("picture")))
                   : QImage();
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
        const QString wrongExtension =
            format == QLatin1String("png") ? QStringLiteral("a.jpg") : QStringLiteral("a.png");
        for (const QString &name : {wrongExtension, QStringLiteral("no extension")}) {
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
            QVERIFY(qint64(image.width()) * image.height() <= maximumDecodedPixels);
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
        QVERIFY(decoded(pngThatClaims(8001, 8000)).isNull());
    }

    void aFileOfTooManyBytesIsRefused()
    {
        QVERIFY(write(path(QStringLiteral("sparse")),
                      encoded(fourFields({16, 16}), QStringLiteral("png"))));
        QVERIFY(QFile::resize(path(QStringLiteral("sparse")), maximumPictureFileSize + 1));
        QVERIFY(decodeImage(url(QStringLiteral("sparse"))).isNull());
        QVERIFY(write(path(QStringLiteral("sparse")), "no picture at all"));
        QVERIFY(QFile::resize(path(QStringLiteral("sparse")), 1'000'000'000'000));
        QVERIFY(decodeImage(url(QStringLiteral("sparse"))).isNull());
    }

    void theLargestAllowedPictureIsRead()
    {
        QImage image(8000, 8000, QImage::Format_Grayscale8);
        image.fill(Qt::gray);
        const QImage read = decoded(encoded(image, QStringLiteral("png")));
        QCOMPARE(read.size(), QSize(8000, 8000));
    }

    void deepChannelsBecomeEightBits()
    {
        const QImage deep = fourFields({32, 32}).convertToFormat(QImage::Format_RGBA64);
        const QImage read = decoded(encoded(deep, QStringLiteral("png")));
        QVERIFY(read.depth() <= 32);
        QVERIFY(lookAlike(read, fourFields({32, 32})));
    }

    void transparencyStays()
    {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(QColor(255, 0, 0, 64));
        QCOMPARE(decoded(encoded(image, QStringLiteral("png"))).pixelColor(3, 3).alpha(), 64);
    }

    void whatIsNoPictureGivesNone()
    {
        QVERIFY(decoded({}).isNull());
        QVERIFY(decoded("Hello, I am a text.\n").isNull());
        QVERIFY(decoded("<svg xmlns='http://www.w3.org/2000/svg'/>").isNull());
        QVERIFY(decoded(QByteArray(4096, '\0')).isNull());
        QVERIFY(decoded("BM").isNull());
        QVERIFY(decoded("\xFF\xD8\xFF").isNull());
        QVERIFY(decodeImage(url(QStringLiteral("missing.png"))).isNull());
        QVERIFY(decodeImage(QUrl()).isNull());
        QVERIFY(decodeImage(-1).isNull());
    }

    void whatIsNoRegularFileIsNotRead()
    {
        QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder.png")));
        QVERIFY(decodeImage(url(QStringLiteral("folder.png"))).isNull());
        const QString pipe = path(QStringLiteral("pipe.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(decodeImage(QUrl::fromLocalFile(pipe)).isNull());
        QVERIFY(decodeImage(QUrl::fromLocalFile(QStringLiteral("/dev/zero"))).isNull());
    }

    void aFileThatMayNotBeReadGivesNone()
    {
        const QString name = path(QStringLiteral("secret.png"));
        QVERIFY(write(name, encoded(fourFields({8, 8}), QStringLiteral("png"))));
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
        QVERIFY(write(path(QStringLiteral("a.png")), encoded(original, QStringLiteral("png"))));
        QFile file(path(QStringLiteral("a.png")));
        QVERIFY(file.open(QFile::ReadOnly | QFile::Unbuffered));
        QVERIFY(file.seek(20));
        QVERIFY(lookAlike(decodeImage(file.handle()), original));
        QVERIFY(lookAlike(decodeImage(file.handle()), original));
        QCOMPARE(file.pos(), 20);
        QCOMPARE(file.read(1).size(), 1);
    }
};

QTEST_GUILESS_MAIN(DecodeImageTest)
#include "DecodeImageTest.moc"
