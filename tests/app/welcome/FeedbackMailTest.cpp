// SPDX-License-Identifier: MIT
#include "app/welcome/feedbackMail.h"

#include "core/VelmoraIdentity.h"
#include "tests/world/TestProgram.h"

#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

class FeedbackMailTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLinkIsAMailToTheTeam()
    {
        QCOMPARE(feedbackMail().scheme(), u"mailto"_s);
        QCOMPARE(feedbackMail().path(), velmoraFeedbackAddress());
    }

    void subjectAndBodyComeInOrderAndWhole()
    {
        const QUrlQuery query(feedbackMail());
        const auto items = query.queryItems(QUrl::FullyDecoded);
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0].first, u"subject"_s);
        QCOMPARE(items[0].second, u"Velmora feedback"_s);
        QCOMPARE(items[1].first, u"body"_s);
        QCOMPARE(items[1].second, u"Hi Velmora team,\n\nWhat I tried:\n\nWhat felt confusing:\n\n"
                                  "What I expected:\n\nMy Linux version and desktop:\n"_s);
    }
};

VELMORA_EVENTS_TEST(FeedbackMailTest)
#include "FeedbackMailTest.moc"
