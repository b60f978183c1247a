// SPDX-License-Identifier: MIT
#include "app/ActiveApplication.h"

#include "core/VelmoraIdentity.h"
#include "platform/FrontmostApplication.h"
#include "tests/fakes/FakeFrontmostApplication.h"
#include "tests/world/TestProgram.h"

#include <QTest>

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
        QCOMPARE(ActiveApplication(frontmost).lastActiveAppName(), QStringLiteral("screenshot"));
        QVERIFY(!ActiveApplication(frontmost).isTold());
    }

    void theApplicationInFrontAtTheStartCounts()
    {
        FakeFrontmostApplication frontmost;
        frontmost.inFront = application("Writer", "org.example.Writer");
        QCOMPARE(ActiveApplication(frontmost).lastActiveAppName(), QStringLiteral("Writer"));
        QVERIFY(ActiveApplication(frontmost).isTold());
    }

    void anActivationCountsOnceObserved()
    {
        FakeFrontmostApplication frontmost;
        ActiveApplication active(frontmost);
        frontmost.bringToFront(application("Writer", "org.example.Writer"));
        QCOMPARE(active.lastActiveAppName(), QStringLiteral("screenshot"));
        active.observe();
        frontmost.bringToFront(application("Painter", "org.example.Painter"));
        QCOMPARE(active.lastActiveAppName(), QStringLiteral("Painter"));
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
        frontmost.bringToFront({QStringLiteral("Velmora"), velmoraBundleIdentifier()});
        active.refresh();
        QCOMPARE(active.lastActiveAppName(), QStringLiteral("Writer"));
        frontmost.inFront.reset();
        active.refresh();
        QCOMPARE(active.lastActiveAppName(), QStringLiteral("Writer"));
    }

    void theNamesAreJudgedFoldedAndWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("counts");
        QTest::newRow("spaces") << QStringLiteral("Notification Center") << false;
        QTest::newRow("hyphens") << QStringLiteral("Control-Center") << false;
        QTest::newRow("capitals") << QStringLiteral("LOGINWINDOW") << false;
        QTest::newRow("accents") << QStringLiteral("Fïndér") << false;
        QTest::newRow("only whole names match") << QStringLiteral("Finder Helper") << true;
        QTest::newRow("ordinary") << QStringLiteral("Writer") << true;
    }

    void theNamesAreJudgedFoldedAndWhole()
    {
        QFETCH(QString, name);
        QTEST(ActiveApplication::isCustomerApp(name, QStringLiteral("org.example.Vendor")),
              "counts");
    }

    void theIdentifiersAreJudgedByTheirPrefix()
    {
        const QString name = QStringLiteral("Helper");
        QVERIFY(!ActiveApplication::isCustomerApp(
            name, QStringLiteral("com.apple.controlcenter.helper")));
        QVERIFY(ActiveApplication::isCustomerApp(name,
                                                 QStringLiteral("COM.apple.controlcenter.helper")));
        QVERIFY(ActiveApplication::isCustomerApp(name, std::nullopt));
        QVERIFY(!ActiveApplication::isCustomerApp(name, velmoraBundleIdentifier()));
        QVERIFY(!ActiveApplication::isCustomerApp(QStringLiteral("Control Center"),
                                                  QStringLiteral("org.example.Vendor")));
    }
};

VELMORA_EVENTS_TEST(ActiveApplicationTest)
#include "ActiveApplicationTest.moc"
