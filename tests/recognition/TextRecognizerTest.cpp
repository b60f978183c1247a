// SPDX-License-Identifier: MIT
#include "tests/recognition/DrawnPage.h"
#include "tests/recognition/TextRecognizerFixture.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

/// In milliseconds. A tenth of a second is usual; under a sanitizer it takes some seconds to check
/// each byte.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr qint64 longestOnNoise = 30'000;
#else
constexpr qint64 longestOnNoise = 3000;
#endif

} // namespace

/// What is read of ordinary text, by several at once, and when reading ends.
class TextRecognizerTest : public QObject, private TextRecognizerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void twoLinesAreReadInOrder()
    {
        QCOMPARE(textOf(pictureOf({u"Quarterly report"_s, u"Numbers for the board"_s})),
                 u"Quarterly report Numbers for the board"_s);
    }

    void lightTextOnADarkGroundIsRead()
    {
        QCOMPARE(textOf(pictureOf({u"Quarterly report"_s}, Qt::white, Qt::darkBlue)),
                 u"Quarterly report"_s);
    }

    void aNullPictureAndAnEmptyOneGiveNothing()
    {
        QCOMPARE(textOf(QImage()), QString());
        QCOMPARE(textOf(pictureOf({})), QString());
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

    void noWordOfALongLineIsReadTwice()
    {
        const QString sentence = u"Quarterly report for the northern region and the "
                                 "harbour villages of the western market"_s;
        for (const char *family : {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"}) {
            for (const int pixels : {13, 15, 19, 24}) {
                DrawnPage page(QSize(1600, 60));
                page.font(QString::fromLatin1(family), pixels);
                page.text(QPoint(20, 40), sentence);
                const QString text = textOf(page.image());
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
        const QString text = textOf(page.image());
        QVERIFY2(text.contains("answer_insert"_L1), qPrintable(text));
        QCOMPARE(text.count("ins"_L1), 1);
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
        QCOMPARE(textOf(picture), u"Quarterly report"_s);
    }

    void severalThreadsReadAtOnce()
    {
        const QImage picture = pictureOf({u"Quarterly report"_s});
        std::vector<std::thread> threads;
        std::atomic_int right = 0;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([&] {
                for (int turn = 0; turn < 3; ++turn) {
                    if (textOf(picture) == "Quarterly report"_L1)
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
        QCOMPARE(textOf(noise), QString());
        QVERIFY2(timer.elapsed() < longestOnNoise, qPrintable(QString::number(timer.elapsed())));
    }
};

VELMORA_WIDGETS_TEST(TextRecognizerTest)

#include "TextRecognizerTest.moc"
