// SPDX-License-Identifier: MIT
#include "imaging/pictureTexts.h"

#include "filesystem/OpenFile.h"
#include "tests/imaging/PeakMemory.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace TestPictures;

class PictureTextsTest : public QObject
{
    Q_OBJECT

    PictureTexts textsOf(const QByteArray &file) const
    {
        const QString path = m_folder.filePath(u"picture.png"_s);
        if (!write(path, file))
            qFatal("can't write a picture");
        const std::shared_ptr<OpenFile> open = OpenFile::open(path);
        return pictureTexts(open->descriptor());
    }

    /// A small picture with these chunks before its pixels.
    static QByteArray pictureWith(const QByteArray &chunks)
    {
        return pngFile(pngHeader(1, 1, QByteArray("\x08\x02\0\0\0", 5)) + chunks +
                       pngData(QByteArray(4, '\0')));
    }

private Q_SLOTS:
    void whatQtsProgramsNoteIsRead()
    {
        QImage image = fourFields({40, 30});
        image.setText(u"windowTitle"_s, u"Übersicht — Dolphin"_s);
        image.setText(u"Software"_s, u"Spectacle"_s);
        image.setText(u"Description"_s, u"other"_s);
        const QString path = m_folder.filePath(u"qt.png"_s);
        QVERIFY(image.save(path));
        const std::shared_ptr<OpenFile> open = OpenFile::open(path);
        const PictureTexts texts = pictureTexts(open->descriptor());
        QCOMPARE(texts.windowTitle, u"Übersicht — Dolphin"_s);
        QCOMPARE(texts.software, u"Spectacle"_s);
    }

    void aPlainTextIsRead()
    {
        const PictureTexts texts =
            textsOf(pictureWith(pngChunk("tEXt", QByteArray("Software\0gnome-screenshot", 25))));
        QCOMPARE(texts.software, u"gnome-screenshot"_s);
        QCOMPARE(texts.windowTitle, QString());
    }

    void aTextIsOneBoundedLineWithoutControlCharacters()
    {
        const PictureTexts texts = textsOf(
            pictureWith(pngChunk("tEXt", QByteArray("windowTitle\0 a\n\tb\x1b[31m\x07", 22)) +
                        pngChunk("tEXt", QByteArray("Software\0", 9) + QByteArray(60'000, 'x'))));
        QCOMPARE(texts.windowTitle, u"a b[31m"_s);
        QCOMPARE(texts.software, QString(longestPictureText, u'x'));
    }

    void hostileFilesTellNothing_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray text = pngChunk("tEXt", QByteArray("Software\0it", 11));
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no PNG") << encoded(fourFields({8, 8}), u"jpeg"_s);
        QTest::newRow("cut short") << pictureWith(text).left(50);
        QByteArray damaged = pictureWith(text);
        damaged[damaged.indexOf("it")] = 'I';
        QTest::newRow("a wrong sum") << damaged;
        QTest::newRow("behind a megabyte of others") << pictureWith(
            pngChunk("tEXt", QByteArray("a\0", 2) + QByteArray(1'000'000, 'x')) + text);
    }

    void hostileFilesTellNothing()
    {
        QFETCH(const QByteArray, file);
        const PictureTexts texts = textsOf(file);
        QCOMPARE(texts.software, QString());
        QCOMPARE(texts.windowTitle, QString());
    }

    void aPackedTextThatGrowsIsRefused()
    {
        const QByteArray packed = qCompress(QByteArray(6'000'000, 'x'), 9).mid(4);
        const QByteArray file =
            pictureWith(pngChunk("zTXt", QByteArray("Software\0\0", 10) + packed));
        if (!PeakMemory::isMeasurable())
            QSKIP("sanitizers keep freed memory for themselves");
        const qint64 before = PeakMemory::startCounting();
        QCOMPARE(textsOf(file).software, QString());
        const qint64 growth = PeakMemory::most() - before;
        QVERIFY2(growth < 2'000'000, qPrintable(QString::number(growth)));
    }

private:
    QTemporaryDir m_folder;
};

VELMORA_PLAIN_TEST(PictureTextsTest)
#include "PictureTextsTest.moc"
