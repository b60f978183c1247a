// SPDX-License-Identifier: MIT
#include "naming/NameWords.h"
#include "tests/world/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// Pieces of text that exercise every rule, and characters that join or separate in unusual ways.
const QStringList &pieces()
{
    static const QStringList list =
        u"Pull,Request,the,May,1423,²³⁴,ab,abc,Café,CAFÉ,cafe,chrome,Chrome,slack,"
        "planBoard,PDFViewer,averyveryverylongwordindeed,日本語,がんばる,हिन्दी,"
        "ЁЛКА,file_name,3.14,don't,—,#,🙂,𐐀𐐁𐐂,\u0301,\u0301abc,\u0600,"
        "\u0D4Eക,"
        "\u200D,x\u200Dyz,\u1100,\u1161,\r,\n,\t,-,İzmir,ﬁnal"_s.split(u',');
    return list;
}

QString randomLine(QRandomGenerator &random)
{
    QString line;
    for (int left = random.bounded(6); left > 0; --left) {
        line += pieces().at(random.bounded(int(pieces().size())));
        if (random.bounded(3) > 0)
            line += u' ';
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
        const QStringList applications = {QString(), u"Google Chrome"_s, u"Slack"_s,
                                          u"Café Planner"_s};
        int early = 0;
        for (int round = 0; round < 5000; ++round) {
            const QString application = applications.at(random.bounded(4));
            QStringList lines;
            for (int left = random.bounded(8); left > 0; --left)
                lines.append(randomLine(random));

            NameWords whole(application);
            whole.add(lines.join(u' '));
            NameWords byLine(application);
            for (const QString &line : std::as_const(lines)) {
                if (!byLine.add(line)) {
                    ++early;
                    break;
                }
            }
            QVERIFY2(byLine.words() == whole.words(),
                     qPrintable(lines.join(u'|') + u" -> "_s + byLine.words().join(u'|') +
                                u" or "_s + whole.words().join(u'|')));
        }
        QVERIFY(early > 500);
        QVERIFY(early < 4500);
    }

    void noMoreIsWantedWithTheFourthWordAndNotBefore()
    {
        NameWords words(u"Safari"_s);
        QVERIFY(words.add(QString()));
        QVERIFY(words.add(u"alpha beta"_s));
        QVERIFY(words.add(u"alpha safari 1234 the"_s));
        QVERIFY(words.add(u"gamma"_s));
        QVERIFY(!words.add(u"delta epsilon"_s));
        QVERIFY(!words.add(u"zeta"_s));
        QCOMPARE(words.words().join(u' '), u"safari alpha beta gamma delta"_s);
    }

    void allTokensOfTheApplicationAreSetAsideButOneIsUsed()
    {
        NameWords words(u"Adobe Photoshop Lightroom"_s);
        words.add(u"photoshop adobe lightroom layers"_s);
        QCOMPARE(words.words().join(u' '), u"adobe lightroom layers"_s);
    }

    void withoutApplicationAndTextThereAreNoWords()
    {
        NameWords words{QString()};
        QVERIFY(words.add(u"12 of May"_s));
        QCOMPARE(words.words(), QStringList());
    }
};

VELMORA_PLAIN_TEST(NameWordsTest)
#include "NameWordsTest.moc"
