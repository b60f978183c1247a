// SPDX-License-Identifier: MIT
#include "naming/NameWords.h"
#include "platform/TextRecognizer.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

const QStringList vocabulary =
    u"File Edit View Search the and for with Window 2026 12:45 a of "
    "invoice Meeting notes budget configuration main.cpp userName "
    "report Monday garden river printer cloud summary Berlin ocean"_s.split(u' ');

/// A page of random words: columns of lines in some sizes and both polarities, a heading.
QImage randomPage(unsigned seed)
{
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    const bool dark = upTo(2) == 1;
    DrawnPage page(QSize(900, 400), dark ? QColor(30, 30, 40) : QColor(Qt::white));
    page.ink(dark ? Qt::white : Qt::black);
    for (int column = 0; column < 2; ++column) {
        int y = 40;
        while (y < 360) {
            const int pixels = upTo(6) == 0 ? 26 : 11 + upTo(6);
            page.font(u"DejaVu Sans"_s, pixels);
            QStringList words;
            for (int word = 0; word < 1 + upTo(4); ++word)
                words.append(vocabulary[upTo(int(vocabulary.size()))]);
            page.text(QPoint(20 + 460 * column, y), words.join(u' '));
            y += 2 * pixels;
        }
    }
    return page.image();
}

QStringList wordsOf(TextRecognizer &recognizer, const QImage &picture, bool stopEarly)
{
    NameWords words(u"Report Viewer"_s);
    QStringList pieces;
    recognizer.recognize(
        picture,
        [&](const QString &text) {
            pieces.append(text);
            return !stopEarly || words.add(text);
        },
        [] { return false; });
    if (!stopEarly)
        words.add(pieces.join(u' '));
    return words.words();
}

} // namespace

class EarlyStopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameIsTheSameAsIfAllLinesHadBeenRead_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 12; ++seed)
            QTest::addRow("page %u", seed) << seed;
    }
    void theNameIsTheSameAsIfAllLinesHadBeenRead()
    {
        QFETCH(unsigned, seed);
        const QImage picture = randomPage(seed);
        const QStringList early = wordsOf(*m_recognizer, picture, true);
        QCOMPARE(early, wordsOf(*m_recognizer, picture, false));
        QVERIFY(early.size() > 1);
    }

private:
    std::unique_ptr<TextRecognizer> m_recognizer = makeTextRecognizer();
};

VELMORA_WIDGETS_TEST(EarlyStopTest)

#include "EarlyStopTest.moc"
