// SPDX-License-Identifier: MIT
#include "app/welcome/feedbackMail.h"

#include "core/VelmoraIdentity.h"
#include "tests/world/TestProgram.h"

#include <QTest>
#include <QUrlQuery>

class FeedbackMailTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLinkIsAMailToTheTeam()
    {
        QCOMPARE(feedbackMail().scheme(), QStringLiteral("mailto"));
        QCOMPARE(feedbackMail().path(), velmoraFeedbackAddress());
    }

    void subjectAndBodyComeInOrderAndWhole()
    {
        const QUrlQuery query(feedbackMail());
        const auto items = query.queryItems(QUrl::FullyDecoded);
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0].first, QStringLiteral("subject"));
        QCOMPARE(items[0].second, QStringLiteral("Velmora feedback"));
        QCOMPARE(items[1].first, QStringLiteral("body"));
        QCOMPARE(items[1].second,
                 QStringLiteral("Hi Velmora team,\n\nWhat I tried:\n\nWhat felt confusing:\n\n"
                                "What I expected:\n\nMy Linux version and desktop:\n"));
    }
};

VELMORA_EVENTS_TEST(FeedbackMailTest)
#include "FeedbackMailTest.moc"
