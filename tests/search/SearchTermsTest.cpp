// SPDX-License-Identifier: MIT
#include "search/searchTerms.h"
#include "search/matchingLine.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

class SearchTermsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void caseAndAccentsAreFoldedAsInNames()
    {
        QCOMPARE(SearchTerms::ofQuery(u"Café CRÈME"_s), QStringList({u"cafe"_s, u"creme"_s}));
        QCOMPARE(SearchTerms::indexed(u"Straße"_s), u"strasse"_s);
    }

    void aWordOfSeveralIsFoundWholeAndByItsParts()
    {
        QCOMPARE(SearchTerms::indexed(u"see pullRequest now"_s),
                 u"see pullrequest now pull request"_s);
        QCOMPARE(SearchTerms::ofQuery(u"pullRequest"_s), QStringList{u"pullrequest"_s});
    }

    void allWordsAreAskedForByTheirBeginnings()
    {
        QCOMPARE(SearchTerms::expression({u"har"_s, u"fest"_s}), u"\"har\"* AND \"fest\"*"_s);
        QCOMPARE(SearchTerms::expression({}), QString());
    }

    void ofAPastedTextOnlyTheBeginningIsSearchedFor()
    {
        QCOMPARE(SearchTerms::ofQuery(QString(100'000, QChar(0x706f))).join(QString()).size(), 400);
        QString words;
        for (int number = 10'000; number < 20'000; ++number)
            words += u"w%1 "_s.arg(number);
        QCOMPARE(SearchTerms::ofQuery(words).size(), 16);
    }

    void whatIsNoWordCannotLeaveTheQuotes()
    {
        QCOMPARE(SearchTerms::ofQuery(u"a\" OR * NOT (b"_s),
                 QStringList({u"a"_s, u"or"_s, u"not"_s, u"b"_s}));
    }

    void aCharacterInTheMiddleOfAChineseSentenceIsFound()
    {
        QCOMPARE(SearchTerms::indexed(u"在图书馆a见"_s), u"在 图 书 馆 a 见"_s);
        QCOMPARE(SearchTerms::expression({u"图书"_s}), u"\"图 书\"*"_s);
    }

    void theLineWithMostOfTheWordsIsShown()
    {
        const QString text = u"Harvest report\nThe harvest festival begins\nfestival"_s;
        QCOMPARE(matchingLine(text, {u"festival"_s, u"harv"_s}),
                 u"The harvest festival begins festival"_s);
        QCOMPARE(matchingLine(text, {u"absent"_s}), QString());
        QCOMPARE(matchingLine(u"Enquiries\nsee pullRequest"_s, {u"request"_s}),
                 u"see pullRequest"_s);
        QCOMPARE(matchingLine(u"unfair\nUn café fermé"_s, {u"ferme"_s, u"cafe"_s}),
                 u"Un café fermé"_s);
    }
};

VELMORA_PLAIN_TEST(SearchTermsTest)
#include "SearchTermsTest.moc"
