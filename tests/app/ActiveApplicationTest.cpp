// SPDX-License-Identifier: MIT
#include "app/ActiveApplication.h"

#include "core/VelmoraIdentity.h"
#include "platform/FrontmostApplication.h"
#include "tests/fakes/FakeFrontmostApplication.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

Application application(const char *name, const char *identifier)
{
    return {QString::fromLatin1(name), QString::fromLatin1(identifier)};
}

} // namespace

class ActiveApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withNothingInFrontTheNameIsScreenshot()
    {
        FakeFrontmostApplication frontmost;
        QCOMPARE(ActiveApplication(frontmost).lastActiveAppName(), u"screenshot"_s);
        QVERIFY(!ActiveApplication(frontmost).isKnown());
    }

    void theApplicationInFrontAtTheStartCounts()
    {
        FakeFrontmostApplication frontmost;
        frontmost.inFront = application("Writer", "org.example.Writer");
        QCOMPARE(ActiveApplication(frontmost).lastActiveAppName(), u"Writer"_s);
        QVERIFY(ActiveApplication(frontmost).isKnown());
    }

    void anActivationCountsOnceObserved()
    {
        FakeFrontmostApplication frontmost;
        ActiveApplication active(frontmost);
        frontmost.bringToFront(application("Writer", "org.example.Writer"));
        QCOMPARE(active.lastActiveAppName(), u"screenshot"_s);
        active.observe();
        frontmost.bringToFront(application("Painter", "org.example.Painter"));
        QCOMPARE(active.lastActiveAppName(), u"Painter"_s);
    }

    void anApplicationThatTheDesktopDoesNotNameTakesThePlaceOfTheLastOne()
    {
        FakeFrontmostApplication frontmost;
        ActiveApplication active(frontmost);
        active.observe();
        frontmost.bringToFront(application("Writer", "org.example.Writer"));
        frontmost.bringToFront({QString(), std::nullopt});
        QCOMPARE(active.lastActiveAppName(), QString());
    }

    void systemComponentsAndVelmoraItselfKeepTheFormerName()
    {
        FakeFrontmostApplication frontmost;
        ActiveApplication active(frontmost);
        active.observe();
        frontmost.bringToFront(application("Writer", "org.example.Writer"));
        frontmost.bringToFront(application("Finder", "com.apple.finder"));
        frontmost.bringToFront(application("Control Center", "com.apple.controlcenter"));
        frontmost.bringToFront({u"Velmora"_s, velmoraBundleIdentifier()});
        active.refresh();
        QCOMPARE(active.lastActiveAppName(), u"Writer"_s);
        frontmost.inFront.reset();
        active.refresh();
        QCOMPARE(active.lastActiveAppName(), u"Writer"_s);
    }

    void theNamesAreJudgedFoldedAndWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("counts");
        QTest::newRow("spaces") << u"Notification Center"_s << false;
        QTest::newRow("hyphens") << u"Control-Center"_s << false;
        QTest::newRow("capitals") << u"LOGINWINDOW"_s << false;
        QTest::newRow("accents") << u"Fïndér"_s << false;
        QTest::newRow("only whole names match") << u"Finder Helper"_s << true;
        QTest::newRow("ordinary") << u"Writer"_s << true;
    }

    void theNamesAreJudgedFoldedAndWhole()
    {
        QFETCH(QString, name);
        QTEST(ActiveApplication::isCustomerApp(name, u"org.example.Vendor"_s), "counts");
    }

    void theIdentifiersAreJudgedByTheirPrefix()
    {
        const QString name = u"Helper"_s;
        QVERIFY(!ActiveApplication::isCustomerApp(name, u"com.apple.controlcenter.helper"_s));
        QVERIFY(ActiveApplication::isCustomerApp(name, u"COM.apple.controlcenter.helper"_s));
        QVERIFY(ActiveApplication::isCustomerApp(name, std::nullopt));
        QVERIFY(!ActiveApplication::isCustomerApp(name, velmoraBundleIdentifier()));
        QVERIFY(!ActiveApplication::isCustomerApp(u"Control Center"_s, u"org.example.Vendor"_s));
    }
};

VELMORA_EVENTS_TEST(ActiveApplicationTest)
#include "ActiveApplicationTest.moc"
