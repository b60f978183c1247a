// SPDX-License-Identifier: MIT
#include "files/ClipboardWriter.h"

#include "imaging/decodeImage.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/files/LogTail.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XClip.h"

#include <QImage>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class ClipboardWriterTest : public QObject
{
    Q_OBJECT

    const std::unique_ptr<Pasteboard> m_pasteboard = makePasteboard();
    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<LogTail> m_log;

    QUrl picture(const QString &name, const char *format = "png") const
    {
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(Qt::blue);
        image.save(m_files->url(name).toLocalFile(), format);
        return m_files->url(name);
    }
    QStringList logged() const { return m_log->messagesWith(m_files->folder().toLocalFile()); }
    static bool copy(Pasteboard &pasteboard, const QUrl &url, CopyBehavior behavior)
    {
        return ClipboardWriter::copy(pasteboard, ClipboardWriter::read(url, behavior));
    }
    static QStringList pictureFormats() { return XClip::formats().filter(u"image/"_s); }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_log = std::make_unique<LogTail>();
        // The other program reports that it is ready just before it owns the clipboard.
        XClip::take("before");
        QTRY_COMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray("before"));
    }

    void aMissingFileLeavesTheClipboardAlone()
    {
        const QUrl gone = m_files->url(u"gone.png"_s);
        QVERIFY(!copy(*m_pasteboard, gone, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray("before"));
        QCOMPARE(logged(), QStringList{u"copy failed missing file "_s + gone.toLocalFile()});
    }

    void nothingClearsTheClipboard()
    {
        const QUrl shot = picture(u"shot.png"_s);
        QVERIFY(!copy(*m_pasteboard, shot, CopyBehavior::none));
        QTRY_COMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray());
        QCOMPARE(logged(), QStringList{u"copy failed "_s + shot.toLocalFile()});
    }

    void aFileOfTooManyBytesStandsThereAsAPicture()
    {
        const QUrl shot = picture(u"shot.tiff"_s, "tiff");
        QVERIFY(QFile::resize(shot.toLocalFile(), maximumClipboardBytes + 1));
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(pictureFormats(), QStringList{u"image/png"_s});
        const QImage pasted = QImage::fromData(XClip::read(u"image/png"_s));
        QCOMPARE(pasted.size(), QSize(40, 30));
        QCOMPARE(pasted.pixelColor(20, 15), QColor(Qt::blue));
    }

    void aPictureStandsThereWithItsOwnBytes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("format");
        QTest::newRow("png") << u"shot.png"_s << u"image/png"_s;
        QTest::newRow("jpg") << u"shot.jpg"_s << u"image/jpeg"_s;
        QTest::newRow("jpeg") << u"shot.jpeg"_s << u"image/jpeg"_s;
        QTest::newRow("JPG") << u"shot.JPG"_s << u"image/jpeg"_s;
        QTest::newRow("heic") << u"shot.heic"_s << u"image/heic"_s;
        QTest::newRow("tiff") << u"shot.tiff"_s << u"image/tiff"_s;
        QTest::newRow("TIF") << u"shot.TIF"_s << u"image/tiff"_s;
        QTest::newRow("gif") << u"shot.gif"_s << u"image/png"_s;
        QTest::newRow("without extension") << u"shot"_s << u"image/png"_s;
    }

    void aPictureStandsThereWithItsOwnBytes()
    {
        QFETCH(QString, name);
        QFETCH(QString, format);
        const QUrl shot = m_files->make(name, "the file's own bytes");
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(XClip::read(format), QByteArray("the file's own bytes"));
        QVERIFY(!XClip::formats().contains(u"text/uri-list"_s));
        QCOMPARE(logged(), QStringList{u"copied "_s + shot.toLocalFile()});
    }

    void aJpegStandsThereDecodedToo()
    {
        const QUrl shot = picture(u"shot.jpg"_s, "jpg");
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(XClip::read(u"image/jpeg"_s), TestFiles::read(shot));
        QVERIFY(QFile::remove(shot.toLocalFile()));
        const QImage decoded = QImage::fromData(XClip::read(u"image/png"_s), "png");
        QCOMPARE(decoded.size(), QSize(40, 30));
        QVERIFY(decoded.pixelColor(20, 15).blue() > 200);
    }

    void aFileStandsThereWithoutItsPicture()
    {
        const QUrl shot = picture(u"shot.png"_s);
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::file));
        QCOMPARE(XClip::read(u"text/uri-list"_s), QByteArray(shot.toEncoded() + "\r\n"));
        QCOMPARE(XClip::read(u"text/plain"_s), shot.toLocalFile().toUtf8());
        QCOMPARE(pictureFormats(), QStringList());
        QCOMPARE(logged(), QStringList{u"copied "_s + shot.toLocalFile()});
    }

    void bothStandThereTogether()
    {
        const QUrl shot = picture(u"shot.png"_s);
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(u"text/uri-list"_s), QByteArray(shot.toEncoded() + "\r\n"));
        QCOMPARE(XClip::read(u"text/plain"_s), shot.toLocalFile().toUtf8());
        QCOMPARE(XClip::read(u"image/png"_s), TestFiles::read(shot));
    }

    void aPictureThatCantBeReadClearsTheClipboard()
    {
        const QUrl pipe = m_files->url(u"shot.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe.toLocalFile()).constData(), 0600), 0);
        QVERIFY(!copy(*m_pasteboard, pipe, CopyBehavior::image));
        QTRY_COMPARE(XClip::read(u"UTF8_STRING"_s), QByteArray());
        QCOMPARE(logged(), QStringList{u"copy failed "_s + pipe.toLocalFile()});
    }

    void aFileWhosePictureCantBeReadIsThereStill()
    {
        const QUrl pipe = m_files->url(u"shot.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe.toLocalFile()).constData(), 0600), 0);
        QVERIFY(copy(*m_pasteboard, pipe, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(u"text/plain"_s), pipe.toLocalFile().toUtf8());
        QCOMPARE(pictureFormats(), QStringList());
        QCOMPARE(logged(), QStringList{u"copied "_s + pipe.toLocalFile()});
    }

    void whatTheDesktopHasNotTakenIsNotCopied()
    {
        const QUrl shot = picture(u"shot.png"_s);
        FakePasteboard pasteboard;
        pasteboard.refuses = true;
        QVERIFY(!copy(pasteboard, shot, CopyBehavior::image));
        QVERIFY(!copy(pasteboard, shot, CopyBehavior::file));
        QVERIFY(!copy(pasteboard, shot, CopyBehavior::imageAndFile));
        const QString path = shot.toLocalFile();
        const QString failed = u"copy failed "_s + path;
        QCOMPARE(logged(), (QStringList{failed, failed, failed}));
    }
};

VELMORA_WIDGETS_TEST(ClipboardWriterTest)
#include "ClipboardWriterTest.moc"
