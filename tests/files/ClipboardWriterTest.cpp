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

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

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
    static QStringList pictureFormats() { return XClip::formats().filter(s("image/")); }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_log = std::make_unique<LogTail>();
        // The other program reports that it is ready just before it owns the clipboard.
        XClip::take("before");
        QTRY_COMPARE(XClip::read(s("UTF8_STRING")), QByteArray("before"));
    }

    void aMissingFileLeavesTheClipboardAlone()
    {
        const QUrl gone = m_files->url(s("gone.png"));
        QVERIFY(!copy(*m_pasteboard, gone, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(s("UTF8_STRING")), QByteArray("before"));
        QCOMPARE(logged(), QStringList{s("copy failed missing file ") + gone.toLocalFile()});
    }

    void nothingClearsTheClipboard()
    {
        const QUrl shot = picture(s("shot.png"));
        QVERIFY(!copy(*m_pasteboard, shot, CopyBehavior::none));
        QTRY_COMPARE(XClip::read(s("UTF8_STRING")), QByteArray());
        QCOMPARE(logged(), QStringList{s("copy failed ") + shot.toLocalFile()});
    }

    void aFileOfTooManyBytesStandsThereAsAPicture()
    {
        const QUrl shot = picture(s("shot.tiff"), "tiff");
        QVERIFY(QFile::resize(shot.toLocalFile(), maximumClipboardBytes + 1));
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(pictureFormats(), QStringList{s("image/png")});
        const QImage pasted = QImage::fromData(XClip::read(s("image/png")));
        QCOMPARE(pasted.size(), QSize(40, 30));
        QCOMPARE(pasted.pixelColor(20, 15), QColor(Qt::blue));
    }

    void aPictureStandsThereWithItsOwnBytes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("format");
        QTest::newRow("png") << s("shot.png") << s("image/png");
        QTest::newRow("jpg") << s("shot.jpg") << s("image/jpeg");
        QTest::newRow("jpeg") << s("shot.jpeg") << s("image/jpeg");
        QTest::newRow("JPG") << s("shot.JPG") << s("image/jpeg");
        QTest::newRow("heic") << s("shot.heic") << s("image/heic");
        QTest::newRow("tiff") << s("shot.tiff") << s("image/tiff");
        QTest::newRow("TIF") << s("shot.TIF") << s("image/tiff");
        QTest::newRow("gif") << s("shot.gif") << s("image/png");
        QTest::newRow("without extension") << s("shot") << s("image/png");
    }

    void aPictureStandsThereWithItsOwnBytes()
    {
        QFETCH(QString, name);
        QFETCH(QString, format);
        const QUrl shot = m_files->make(name, "the file's own bytes");
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(XClip::read(format), QByteArray("the file's own bytes"));
        QVERIFY(!XClip::formats().contains(s("text/uri-list")));
        QCOMPARE(logged(), QStringList{s("copied ") + shot.toLocalFile()});
    }

    void aJpegStandsThereDecodedToo()
    {
        const QUrl shot = picture(s("shot.jpg"), "jpg");
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::image));
        QCOMPARE(XClip::read(s("image/jpeg")), TestFiles::read(shot));
        QVERIFY(QFile::remove(shot.toLocalFile()));
        const QImage decoded = QImage::fromData(XClip::read(s("image/png")), "png");
        QCOMPARE(decoded.size(), QSize(40, 30));
        QVERIFY(decoded.pixelColor(20, 15).blue() > 200);
    }

    void aFileStandsThereWithoutItsPicture()
    {
        const QUrl shot = picture(s("shot.png"));
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::file));
        QCOMPARE(XClip::read(s("text/uri-list")), QByteArray(shot.toEncoded() + "\r\n"));
        QCOMPARE(XClip::read(s("text/plain")), shot.toLocalFile().toUtf8());
        QCOMPARE(pictureFormats(), QStringList());
        QCOMPARE(logged(), QStringList{s("copied ") + shot.toLocalFile()});
    }

    void bothStandThereTogether()
    {
        const QUrl shot = picture(s("shot.png"));
        QVERIFY(copy(*m_pasteboard, shot, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(s("text/uri-list")), QByteArray(shot.toEncoded() + "\r\n"));
        QCOMPARE(XClip::read(s("text/plain")), shot.toLocalFile().toUtf8());
        QCOMPARE(XClip::read(s("image/png")), TestFiles::read(shot));
    }

    void aPictureThatCantBeReadClearsTheClipboard()
    {
        const QUrl pipe = m_files->url(s("shot.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe.toLocalFile()).constData(), 0600), 0);
        QVERIFY(!copy(*m_pasteboard, pipe, CopyBehavior::image));
        QTRY_COMPARE(XClip::read(s("UTF8_STRING")), QByteArray());
        QCOMPARE(logged(), QStringList{s("copy failed ") + pipe.toLocalFile()});
    }

    void aFileWhosePictureCantBeReadIsThereStill()
    {
        const QUrl pipe = m_files->url(s("shot.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe.toLocalFile()).constData(), 0600), 0);
        QVERIFY(copy(*m_pasteboard, pipe, CopyBehavior::imageAndFile));
        QCOMPARE(XClip::read(s("text/plain")), pipe.toLocalFile().toUtf8());
        QCOMPARE(pictureFormats(), QStringList());
        QCOMPARE(logged(), QStringList{s("copied ") + pipe.toLocalFile()});
    }

    void aRefusalCountsForAPictureAndNotForAFile()
    {
        const QUrl shot = picture(s("shot.png"));
        FakePasteboard pasteboard;
        pasteboard.refuses = true;
        QVERIFY(!copy(pasteboard, shot, CopyBehavior::image));
        QVERIFY(copy(pasteboard, shot, CopyBehavior::file));
        QVERIFY(copy(pasteboard, shot, CopyBehavior::imageAndFile));
        const QString path = shot.toLocalFile();
        QCOMPARE(logged(),
                 (QStringList{s("copy failed ") + path, s("copied ") + path, s("copied ") + path}));
    }
};

VELMORA_WIDGETS_TEST(ClipboardWriterTest)
#include "ClipboardWriterTest.moc"
