// SPDX-License-Identifier: MIT
#include "naming/NameWords.h"
#include "tests/world/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

namespace
{

/// Pieces of text that exercise every rule, and characters that join or separate in unusual ways.
const QStringList &pieces()
{
    static const QStringList list =
        QStringLiteral(
            "Pull,Request,the,May,1423,²³⁴,ab,abc,Café,CAFÉ,cafe,chrome,Chrome,slack,"
            "planBoard,PDFViewer,averyveryverylongwordindeed,日本語,がんばる,हिन्दी,"
            "ЁЛКА,file_name,3.14,don't,—,#,🙂,𐐀𐐁𐐂,\u0301,\u0301abc,\u0600,"
            "\u0D4Eക,"
            "\u200D,x\u200Dyz,\u1100,\u1161,\r,\n,\t,-,İzmir,ﬁnal")
            .split(QLatin1Char(','));
    return list;
}

QString randomLine(QRandomGenerator &random)
{
    QString line;
    for (int left = random.bounded(6); left > 0; --left) {
        line += pieces().at(random.bounded(int(pieces().size())));
        if (random.bounded(3) > 0)
            line += QLatin1Char(' ');
    }
    return line;
}

} // namespace

class NameWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWordsAreTheSameAsIfAllLinesWereGivenAtOnce()
    {
        QRandomGenerator random(20260115);
        const QStringList applications = {QString(), QStringLiteral("Google Chrome"),
                                          QStringLiteral("Slack"), QStringLiteral("Café Planner")};
        int early = 0;
        for (int round = 0; round < 5000; ++round) {
            const QString application = applications.at(random.bounded(4));
            QStringList lines;
            for (int left = random.bounded(8); left > 0; --left)
                lines.append(randomLine(random));

            NameWords whole(application);
            whole.add(lines.join(QLatin1Char(' ')));
            NameWords byLine(application);
            for (const QString &line : std::as_const(lines)) {
                if (!byLine.add(line)) {
                    ++early;
                    break;
                }
            }
            QVERIFY2(byLine.words() == whole.words(),
                     qPrintable(lines.join(QLatin1Char('|')) + QStringLiteral(" -> ") +
                                byLine.words().join(QLatin1Char('|')) + QStringLiteral(" or ") +
                                whole.words().join(QLatin1Char('|'))));
        }
        QVERIFY(early > 500);
        QVERIFY(early < 4500);
    }

    void noMoreIsWantedWithTheFourthWordAndNotBefore()
    {
        NameWords words(QStringLiteral("Safari"));
        QVERIFY(words.add(QString()));
        QVERIFY(words.add(QStringLiteral("alpha beta")));
        QVERIFY(words.add(QStringLiteral("alpha safari 1234 the")));
        QVERIFY(words.add(QStringLiteral("gamma")));
        QVERIFY(!words.add(QStringLiteral("delta epsilon")));
        QVERIFY(!words.add(QStringLiteral("zeta")));
        QCOMPARE(words.words().join(QLatin1Char(' ')),
                 QStringLiteral("safari alpha beta gamma delta"));
    }

    void allTokensOfTheApplicationAreSetAsideButOneIsUsed()
    {
        NameWords words(QStringLiteral("Adobe Photoshop Lightroom"));
        words.add(QStringLiteral("photoshop adobe lightroom layers"));
        QCOMPARE(words.words().join(QLatin1Char(' ')), QStringLiteral("adobe lightroom layers"));
    }

    void withoutApplicationAndTextThereAreNoWords()
    {
        NameWords words{QString()};
        QVERIFY(words.add(QStringLiteral("12 of May")));
        QCOMPARE(words.words(), QStringList());
    }
};

VELMORA_PLAIN_TEST(NameWordsTest)
#include "NameWordsTest.moc"
