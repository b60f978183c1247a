// SPDX-License-Identifier: MIT
#include "platform/TextRecognizer.h"

#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{

/// Where the lines of text begin.
constexpr int leftMargin = 60;

/// A picture of lines of text, one below the other.
QImage pictureOf(const QStringList &lines, QColor ink = Qt::black, QColor ground = Qt::white,
                 int pixels = 16)
{
    QImage picture(640, 40 + 3 * pixels * int(lines.size()), QImage::Format_RGB32);
    picture.fill(ground);
    QPainter painter(&picture);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(pixels);
    painter.setFont(font);
    painter.setPen(ink);
    for (int index = 0; index < lines.size(); ++index)
        painter.drawText(leftMargin, 20 + pixels + 3 * pixels * index, lines[index]);
    return picture;
}

QString textOf(TextRecognizer &recognizer, const QImage &picture)
{
    QStringList pieces;
    recognizer.recognize(
        picture,
        [&](const QString &text) {
            pieces.append(text);
            return true;
        },
        [] { return false; });
    return pieces.join(u' ');
}

/// In milliseconds. A tenth of a second is usual; under a sanitizer it takes some seconds to check
/// each byte.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr qint64 longestOnNoise = 30'000;
#else
constexpr qint64 longestOnNoise = 3000;
#endif

QStringList sortedWords(const QString &text)
{
    QStringList words = text.split(u' ');
    words.sort();
    return words;
}

} // namespace

class TextRecognizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_recognizer = makeTextRecognizer(); }

    void twoLinesAreReadInOrder()
    {
        QCOMPARE(
            textOf(*m_recognizer, pictureOf({u"Quarterly report"_s, u"Numbers for the board"_s})),
            u"Quarterly report Numbers for the board"_s);
    }

    void lightTextOnADarkGroundIsRead()
    {
        QCOMPARE(textOf(*m_recognizer, pictureOf({u"Quarterly report"_s}, Qt::white, Qt::darkBlue)),
                 u"Quarterly report"_s);
    }

    void aNullPictureAndAnEmptyOneGiveNothing()
    {
        QCOMPARE(textOf(*m_recognizer, QImage()), QString());
        QCOMPARE(textOf(*m_recognizer, pictureOf({})), QString());
    }

    void readingStopsWhenTheHandlerHasEnough()
    {
        int pieces = 0;
        m_recognizer->recognize(
            pictureOf({u"First line"_s, u"Second line"_s}),
            [&](const QString &) {
                ++pieces;
                return false;
            },
            [] { return false; });
        QCOMPARE(pieces, 1);
    }

    void texturesAndIconsGiveNoWords()
    {
        DrawnPage page(QSize(800, 600));
        page.texture(QRect(0, 0, 800, 400), 7);
        for (int x = 20; x < 760; x += 60)
            page.icon(QRect(x, 450, 24, 24), x);
        QCOMPARE(textOf(*m_recognizer, page.image()), QString());
    }

    void anEmptyCheckBoxIsNoLetterOfItsLabel_data()
    {
        QTest::addColumn<bool>("round");
        QTest::addColumn<int>("pixels");
        for (const bool round : {true, false}) {
            for (const int pixels : {12, 15, 20, 26})
                QTest::addRow("%s, %d", round ? "round" : "square", pixels) << round << pixels;
        }
    }
    void anEmptyCheckBoxIsNoLetterOfItsLabel()
    {
        QFETCH(bool, round);
        QFETCH(int, pixels);
        const QStringList labels{u"Server"_s, u"Quarterly report"_s, u"monitor"_s};
        QImage picture = pictureOf(labels, Qt::black, QColor(240, 240, 230), pixels);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::gray, 1.3));
        painter.setBrush(Qt::white);
        for (int index = 0; index < labels.size(); ++index) {
            // Directly before the label, on its base line.
            const QRectF box(leftMargin - 1.4 * pixels, 20.5 + 0.1 * pixels + 3 * pixels * index,
                             pixels, pixels);
            painter.drawRoundedRect(box, round ? pixels / 2.0 : 2, round ? pixels / 2.0 : 2);
        }
        painter.end();
        QCOMPARE(sortedWords(textOf(*m_recognizer, picture)), sortedWords(labels.join(u' ')));
    }

    void anIconMayStandBeforeACheckBox()
    {
        DrawnPage page(QSize(480, 80));
        page.font(u"DejaVu Sans"_s, 15);
        page.text(QPoint(90, 45), u"Server domain"_s);
        page.box(QRect(71, 32, 13, 13));
        page.icon(QRect(48, 31, 15, 15), 30);
        QCOMPARE(textOf(*m_recognizer, page.image()), u"Server domain"_s);
    }

    void aRoundFirstLetterIsNoCheckBox_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<int>("pixels");
        for (const char *family : {"DejaVu Sans", "DejaVu Sans Mono", "DejaVu Serif"}) {
            for (const int pixels : {12, 16, 26})
                QTest::addRow("%s, %d", family, pixels) << QString::fromLatin1(family) << pixels;
        }
    }
    void aRoundFirstLetterIsNoCheckBox()
    {
        QFETCH(QString, family);
        QFETCH(int, pixels);
        DrawnPage page(QSize(480, 160));
        page.font(family, pixels);
        page.text(QPoint(20, 40), u"Oldest orange"_s);
        page.text(QPoint(20, 120), u"Ocean"_s);
        QCOMPARE(textOf(*m_recognizer, page.image()), u"Oldest orange Ocean"_s);
    }

    void aRoundSecondLetterIsNoCheckBox_data() { aRoundFirstLetterIsNoCheckBox_data(); }
    void aRoundSecondLetterIsNoCheckBox()
    {
        QFETCH(QString, family);
        QFETCH(int, pixels);
        DrawnPage page(QSize(480, 60));
        page.font(family, pixels);
        page.text(QPoint(20, 40), u"Go back, no ticket"_s);
        const QString text = textOf(*m_recognizer, page.image());
        QVERIFY2(text.startsWith(QLatin1String("Go back")), qPrintable(text));
    }

    void noWordOfALongLineIsReadTwice()
    {
        const QString sentence = u"Quarterly report for the northern region and the "
                                 "harbour villages of the western market"_s;
        for (const char *family : {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"}) {
            for (const int pixels : {13, 15, 19, 24}) {
                DrawnPage page(QSize(1600, 60));
                page.font(QString::fromLatin1(family), pixels);
                page.text(QPoint(20, 40), sentence);
                const QString text = textOf(*m_recognizer, page.image());
                for (const char *word : {"Quarterly", "report", "northern", "harbour", "villages"})
                    QVERIFY2(text.count(QLatin1String(word)) <= 1, qPrintable(text));
            }
        }
    }

    void wordsJoinedByAnUnderscoreAreReadOnceAndWhole()
    {
        DrawnPage page(QSize(480, 60));
        page.font(u"DejaVu Sans Mono"_s, 12);
        page.text(QPoint(40, 40), u"if (answer_insert > 42) {"_s);
        const QString text = textOf(*m_recognizer, page.image());
        QVERIFY2(text.contains(QLatin1String("answer_insert")), qPrintable(text));
        QCOMPARE(text.count(QLatin1String("ins")), 1);
    }

    void captionsCloseToPicturesInARowAreRead()
    {
        // At a reduced scale, the pictures with their captions look like the letters of one word.
        const QStringList captions{u"Harbour"_s, u"Mountain"_s, u"Evening"_s, u"Village"_s};
        QImage page(800, 200, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(13);
        painter.setFont(font);
        std::mt19937 random(3);
        for (int index = 0; index < captions.size(); ++index) {
            const QRect picture(20 + 176 * index, 20, 160, 112);
            for (int x = picture.left(); x < picture.right(); x += 4) {
                for (int y = picture.top(); y < picture.bottom(); y += 4)
                    painter.fillRect(x, y, 4, 4, QColor(QRgb(random() | 0xff000000U)));
            }
            painter.drawText(picture.bottomLeft() + QPoint(0, 12), captions[index]);
        }
        painter.end();
        QCOMPARE(textOf(*m_recognizer, page), captions.join(u' '));
    }

    void pictureFormatsAreReadAlike_data()
    {
        QTest::addColumn<QImage::Format>("format");
        for (QImage::Format format :
             {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB888,
              QImage::Format_Grayscale8, QImage::Format_Indexed8, QImage::Format_Mono,
              QImage::Format_RGBA64, QImage::Format_RGB16})
            QTest::addRow("format %d", int(format)) << format;
    }
    void pictureFormatsAreReadAlike()
    {
        QFETCH(QImage::Format, format);
        const QImage picture = pictureOf({u"Quarterly report"_s}).convertToFormat(format);
        QCOMPARE(textOf(*m_recognizer, picture), u"Quarterly report"_s);
    }

    void severalThreadsReadAtOnce()
    {
        const QImage picture = pictureOf({u"Quarterly report"_s});
        std::vector<std::thread> threads;
        std::atomic_int right = 0;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 3; ++turn) {
                    if (textOf(*m_recognizer, picture) == QLatin1String("Quarterly report"))
                        ++right;
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(right, 9);
    }

    void aCancelledPictureGivesNothing()
    {
        int pieces = 0;
        m_recognizer->recognize(
            pictureOf({u"First line"_s}),
            [&](const QString &) {
                ++pieces;
                return true;
            },
            [] { return true; });
        QCOMPARE(pieces, 0);
    }

    void cancellingEndsTheReadingOfAFullPageSoon()
    {
        DrawnPage page(QSize(1920, 1080));
        page.font(u"DejaVu Sans"_s, 14);
        for (int y = 30; y < 1060; y += 22)
            page.text(QPoint(20, y), u"The river was quiet, the boats lay still and "
                                     "nobody was about so early in the morning"_s);
        bool cancelled = false;
        QElapsedTimer sinceThen;
        m_recognizer->recognize(
            page.image(),
            [&](const QString &) {
                if (!cancelled)
                    sinceThen.start();
                cancelled = true;
                return true;
            },
            [&] { return cancelled; });
        QVERIFY(cancelled);
        // The current piece is read to its end; a whole page takes seconds.
        QVERIFY2(sinceThen.elapsed() < 500, qPrintable(QString::number(sinceThen.elapsed())));
    }

    void noiseOfManyPixelsIsGivenUpInTime()
    {
        QImage noise(4000, 3000, QImage::Format_RGB32);
        std::mt19937 random(5);
        for (int y = 0; y < noise.height(); ++y) {
            auto *row = reinterpret_cast<QRgb *>(noise.scanLine(y));
            std::generate_n(row, noise.width(), [&] { return QRgb(random() | 0xff000000U); });
        }
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(textOf(*m_recognizer, noise), QString());
        QVERIFY2(timer.elapsed() < longestOnNoise, qPrintable(QString::number(timer.elapsed())));
    }

private:
    std::unique_ptr<TextRecognizer> m_recognizer;
};

VELMORA_WIDGETS_TEST(TextRecognizerTest)

#include "TextRecognizerTest.moc"
