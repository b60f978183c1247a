// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XClip.h"
#include "tests/world/XDesktop.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

using ImageType = PasteboardContents::ImageType;

PasteboardContents fileContents(const QUrl &file)
{
    PasteboardContents contents;
    contents.file = file;
    return contents;
}

PasteboardContents pictureContents(ImageType type, const QByteArray &bytes, const QImage &image)
{
    PasteboardContents contents;
    contents.picture = {bytes, type, [image] { return image; }};
    return contents;
}

QImage redPicture()
{
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

/// What other programs see of the clipboard. What every pasteboard promises is in
/// ServiceContractsTest.
class PasteboardTest : public QObject
{
    Q_OBJECT

    const TestFiles m_files{};
    const QUrl m_shot = m_files.make(u"a b é%25.png"_s);
    const QUrl m_other = m_files.make(u"other.png"_s);

private Q_SLOTS:
    void init() { XClip::take("before"); }

    void aFileStandsThereInEveryFormThatIsPasted()
    {
        const auto pasteboard = makePasteboard();
        pasteboard->write(fileContents(m_shot));
        const QByteArray uri = m_shot.toEncoded();
        QVERIFY(uri.endsWith("/a%20b%20%C3%A9%2525.png"));
        QCOMPARE(XClip::read(u"text/uri-list"_s), QByteArray(uri + "\r\n"));
        QCOMPARE(XClip::read(u"x-special/gnome-copied-files"_s), QByteArray("copy\n" + uri));
        QCOMPARE(XClip::read(u"x-special/mate-copied-files"_s), QByteArray("copy\n" + uri));
        QCOMPARE(XClip::read(u"application/x-kde-cutselection"_s), QByteArray("0"));
        const QByteArray path = m_shot.toLocalFile().toUtf8();
        for (const char *format : {"text/plain", "UTF8_STRING"})
            QCOMPARE(XClip::read(QString::fromUtf8(format)), path);
        for (const QString &format : XClip::formats())
            QVERIFY2(!format.startsWith(u"image/"_s), qPrintable(format));
    }

    void fileManagersMeetTheFileBeforeThePicture()
    {
        PasteboardContents contents = pictureContents(ImageType::Png, "bytes", {});
        contents.file = m_shot;
        const auto pasteboard = makePasteboard();
        pasteboard->write(contents);
        const QStringList known = {u"text/uri-list"_s, u"x-special/gnome-copied-files"_s,
                                   u"x-special/mate-copied-files"_s,
                                   u"application/x-kde-cutselection"_s, u"image/png"_s};
        QStringList offered = XClip::formats();
        offered.removeIf([&known](const QString &format) { return !known.contains(format); });
        QCOMPARE(offered, known);
    }

    void aPicturesBytesStandUnderTheirType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("format");
        QTest::newRow("PNG") << int(ImageType::Png) << u"image/png"_s;
        QTest::newRow("JPEG") << int(ImageType::Jpeg) << u"image/jpeg"_s;
        QTest::newRow("HEIC") << int(ImageType::Heic) << u"image/heic"_s;
        QTest::newRow("TIFF") << int(ImageType::Tiff) << u"image/tiff"_s;
    }

    void aPicturesBytesStandUnderTheirType()
    {
        QFETCH(int, type);
        QFETCH(QString, format);
        const QByteArray bytes = QByteArray::fromHex("00ff0a0d80") + "bytes";
        const auto pasteboard = makePasteboard();
        pasteboard->write(pictureContents(ImageType(type), bytes, redPicture()));
        QCOMPARE(XClip::read(format), bytes);
        QStringList pictures = XClip::formats().filter(u"image/"_s);
        pictures.removeAll(format);
        QCOMPARE(pictures,
                 type == int(ImageType::Png) ? QStringList() : QStringList{u"image/png"_s});
    }

    void whoCantReadTheTypeGetsThePictureAsPng()
    {
        int decoded = 0;
        PasteboardContents contents;
        contents.picture = {QByteArray("heic bytes"), ImageType::Heic, [&decoded] {
                                ++decoded;
                                return redPicture();
                            }};
        const auto pasteboard = makePasteboard();
        pasteboard->write(contents);
        XClip::formats();
        XClip::read(u"image/heic"_s);
        QCOMPARE(decoded, 0);
        const QByteArray png = XClip::read(u"image/png"_s);
        QCOMPARE(QImage::fromData(png, "png").convertToFormat(QImage::Format_RGB32), redPicture());
        QCOMPARE(XClip::read(u"image/png"_s), png);
        QCOMPARE(decoded, 1);
    }

    void aPictureThatCantBeDecodedIsNoPng()
    {
        const auto pasteboard = makePasteboard();
        pasteboard->write(pictureContents(ImageType::Jpeg, "no jpeg", {}));
        QCOMPARE(XClip::read(u"image/png"_s), QByteArray());
        QCOMPARE(XClip::read(u"image/jpeg"_s), QByteArray("no jpeg"));
    }

    void aLargePictureArrivesWhole()
    {
        QByteArray bytes(3'000'000, '\0');
        for (qsizetype i = 0; i < bytes.size(); ++i)
            bytes[i] = char(i * 31 + i / 251);
        const auto pasteboard = makePasteboard();
        pasteboard->write(pictureContents(ImageType::Png, bytes, {}));
        QVERIFY(XClip::read(u"image/png"_s) == bytes);
    }

    void programsOfTheSameToolkitGetThePictureAndTheFile()
    {
        PasteboardContents contents = pictureContents(ImageType::Jpeg, "no jpeg", redPicture());
        contents.file = m_shot;
        const auto pasteboard = makePasteboard();
        pasteboard->write(contents);
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(data->urls(), QList<QUrl>{m_shot});
        QCOMPARE(data->text(), m_shot.toLocalFile());
        QVERIFY(data->hasUrls());
    }

    /// The real file manager, used by its keys.
    void cajaPastesTheFile()
    {
        const QString caja = QStandardPaths::findExecutable(u"caja"_s);
        if (caja.isEmpty())
            QSKIP("Caja is not installed");
        const QTemporaryDir target;
        const auto pasteboard = makePasteboard();
        pasteboard->write(fileContents(m_shot));
        QProcess process;
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(caja, {u"--no-desktop"_s, u"--browser"_s, target.path()});
        const auto window = [] {
            return XDesktop::run(u"xdotool"_s,
                                 {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"caja"_s});
        };
        QTRY_VERIFY_WITH_TIMEOUT(!window().isEmpty(), 20'000);
        const QString pasted = target.filePath(m_shot.fileName());
        const auto isPasted = [&pasted] { return QFile::exists(pasted); };
        // It may not be ready for the key as soon as its window is there. But a second key while it
        // is only slow makes it ask whether to replace the file.
        const auto paste = [&] {
            XDesktop::run(u"xdotool"_s,
                          {u"windowactivate"_s, u"--sync"_s, window().section(u'\n', -1)});
            XDesktop::pressKey(u"ctrl+v"_s);
            return QTest::qWaitFor(isPasted, 7000);
        };
        QVERIFY(QTest::qWaitFor([&] { return isPasted() || paste(); }, 30'000));
        process.kill();
        process.waitForFinished();
    }

    void whatAnotherProgramPutThereIsLeftAlone()
    {
        const auto pasteboard = makePasteboard();
        pasteboard->write(fileContents(m_shot));
        XClip::take("somebody else's");
        QTRY_VERIFY(!QGuiApplication::clipboard()->ownsClipboard());
        pasteboard->fileMoved(m_shot, m_other);
        QCOMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray("somebody else's"));
    }

    void whatThisProgramPutThereAnotherWayIsLeftAlone()
    {
        const auto pasteboard = makePasteboard();
        pasteboard->write(fileContents(m_shot));
        QGuiApplication::clipboard()->setText(u"another part's"_s);
        pasteboard->fileMoved(m_shot, m_other);
        QCOMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray("another part's"));
    }
};

VELMORA_WIDGETS_TEST(PasteboardTest)
#include "PasteboardTest.moc"
