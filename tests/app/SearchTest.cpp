// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"

#include "app/welcome/dialogs/Alert.h"
#include "core/VelmoraSettings.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "files/recent/SearchField.h"
#include "search/SearchIndex.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDesktopServices>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 30'000;

QString databasePath()
{
    return SearchStore::defaultFolder() + u"/search.db"_s;
}

/// What another process finds.
QStringList found(const QString &words)
{
    QStringList names;
    for (const SearchHit &hit : SearchIndex().find(words, 50))
        names << FileUrls::lastPathComponent(hit.url);
    return names;
}

/// Whether the desktop's own search can ask the program.
bool isOfferedToDesktop()
{
    const auto *bus = QDBusConnection::sessionBus().interface();
    return bus->isServiceRegistered(u"app.velmora.Velmora.Search"_s);
}

RecentScreenshotsWindow *openRecent(const AppRig &rig)
{
    Q_EMIT rig.platform.runningInstance->actionRequested(u"recent"_s);
    auto *window =
        qobject_cast<RecentScreenshotsWindow *>(AppRig::windowTitled(u"Recent Screenshots"_s));
    if (!window || !QTest::qWaitForWindowActive(window, patience))
        qFatal("no window");
    return window;
}

Alert *alert()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *alert = qobject_cast<Alert *>(window); alert && alert->isVisible())
            return alert;
    }
    return nullptr;
}

void press(const QString &title)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        for (QPushButton *button : window->findChildren<QPushButton *>()) {
            if (button->isVisible() && button->text() == title)
                return button->click();
        }
    }
    qFatal("no such button");
}

} // namespace

/// Opens files instead of the desktop.
class Opener : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened << url; }
};

/// The search on the real coordinator and a real database.
class SearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { AppRig::clear(); }

    void whoNeverSearchesHasNoDatabase()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        const QString name = u"safari-harvest-festival-invitation.png"_s;
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::filesInFolder(), QStringList{name}, patience);
        QVERIFY(Waiting::staysTrue([] { return !QFile::exists(SearchStore::defaultFolder()); },
                                   6000ms));
        QCOMPARE(rig.recognizer->begun, 1);
    }

    void aNewScreenshotIsFoundUnderItsNameByItsTextAndItsApplication()
    {
        VelmoraSettings::setSearchConsent(SearchConsent::given);
        AppRig rig;
        rig.launch();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(databasePath()), patience);
        rig.take(u"Screenshot.png"_s);
        const QString name = u"safari-harvest-festival-invitation.png"_s;
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::filesInFolder(), QStringList{name}, patience);
        QTRY_COMPARE_WITH_TIMEOUT(SearchIndex().find(u"harvest safari"_s, 5).value(0).line,
                                  u"Harvest festival invitation"_s, patience);
        QCOMPARE(found(u"invit fest"_s), QStringList{name});
    }

    void theTrashAndUndoAreFollowed()
    {
        VelmoraSettings::setSearchConsent(SearchConsent::given);
        AppRig rig;
        rig.take(u"old.png"_s);
        rig.launch();
        QTRY_COMPARE_WITH_TIMEOUT(SearchIndex().find(u"harvest"_s, 5).size(), 1, patience);
        Q_EMIT rig.platform.runningInstance->actionRequested(u"recent"_s);
        RecentScreenshotsWindow *window = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((window = qobject_cast<RecentScreenshotsWindow *>(
                                      AppRig::windowTitled(u"Recent Screenshots"_s))),
                                 patience);
        QTRY_COMPARE_WITH_TIMEOUT(window->view()->rows().size(), 1, patience);
        window->view()->rows().constFirst()->findChildren<QPushButton *>().at(2)->click();
        QTRY_VERIFY_WITH_TIMEOUT(found(u"harvest"_s).isEmpty(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(AppRig::filesInFolder().isEmpty(), patience);
        QVERIFY(Waiting::staysTrue([] { return found(u"harvest"_s).isEmpty(); }, 500ms));
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_COMPARE_WITH_TIMEOUT(found(u"harvest"_s), QStringList{u"old.png"_s}, patience);
        QCOMPARE(rig.recognizer->begun, 1);
    }

    void theFirstSearchAsksOnceAndAYesIsRemembered()
    {
        AppRig rig;
        rig.take(u"old.png"_s);
        rig.launch();
        RecentScreenshotsWindow *window = openRecent(rig);
        QVERIFY(!alert());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F);
        QTRY_VERIFY_WITH_TIMEOUT(alert(), patience);
        // A user who continues to type has chosen nothing.
        for (const Qt::Key key : {Qt::Key_E, Qt::Key_Space, Qt::Key_Return})
            QTest::keyClick(QApplication::focusWidget(), key);
        QVERIFY(Waiting::staysTrue([] { return alert() != nullptr; }, 500ms));
        QVERIFY(!QFile::exists(SearchStore::defaultFolder()));
        press(u"Remember Text"_s);
        QTRY_COMPARE_WITH_TIMEOUT(found(u"harvest"_s), QStringList{u"old.png"_s}, patience);
        QCOMPARE(VelmoraSettings::searchConsent(), SearchConsent::given);
        window->searchFor(u"festival"_s);
        QTRY_COMPARE_WITH_TIMEOUT(window->searchView()->rows().size(), 1, patience);
        QVERIFY(Waiting::staysTrue([] { return !alert(); }, 1500ms));
    }

    void aNoCostsNothingButTheTexts()
    {
        AppRig rig;
        rig.take(u"old.png"_s);
        rig.launch();
        RecentScreenshotsWindow *window = openRecent(rig);
        window->searchFor(u"ol"_s);
        QTRY_VERIFY_WITH_TIMEOUT(alert(), patience);
        press(u"Names Only"_s);
        QTRY_COMPARE_WITH_TIMEOUT(window->searchView()->rows().size(), 1, patience);
        window->searchFor(u"old"_s);
        QVERIFY(Waiting::staysTrue([] { return !alert(); }, 1500ms));
        QCOMPARE(window->searchView()->rows().size(), 1);
        QCOMPARE(rig.recognizer->begun, 0);
        QVERIFY(!QFile::exists(SearchStore::defaultFolder()));
    }

    void aResultOfTheDesktopOpensItsPictureOrIsRevealed()
    {
        AppRig rig;
        auto *browser = new FakeFileBrowser;
        rig.platform.fileBrowser.reset(browser);
        rig.launch();
        const QUrl picture = rig.take(u"old.png"_s);
        Opener opener;
        QDesktopServices::setUrlHandler(u"file"_s, &opener, "open");
        Q_EMIT rig.platform.desktopSearch->openRequested(picture);
        QCOMPARE(opener.opened, QList<QUrl>{picture});
        QDesktopServices::unsetUrlHandler(u"file"_s);
        Q_EMIT rig.platform.desktopSearch->revealRequested(picture);
        QCOMPARE(browser->revealed, QList<QUrl>{picture});
        Q_EMIT rig.platform.desktopSearch->searchRequested(u"old"_s);
        auto *window =
            qobject_cast<RecentScreenshotsWindow *>(AppRig::windowTitled(u"Recent Screenshots"_s));
        QVERIFY(window && window->searchView());
        QCOMPARE(window->searchView()->field().text(), u"old"_s);
    }

    void oneActionDeletesAllTexts()
    {
        VelmoraSettings::setSearchConsent(SearchConsent::given);
        AppRig rig;
        rig.take(u"old.png"_s);
        rig.launch();
        QTRY_COMPARE_WITH_TIMEOUT(found(u"harvest"_s), QStringList{u"old.png"_s}, patience);
        QVERIFY(isOfferedToDesktop());
        RecentScreenshotsWindow *window = openRecent(rig);
        window->searchFor(u"harvest"_s);
        QTRY_COMPARE_WITH_TIMEOUT(window->searchView()->rows().size(), 1, patience);
        press(u"Delete Remembered Text"_s);
        QTRY_COMPARE_WITH_TIMEOUT(window->searchView()->rows().size(), 0, patience);
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(databasePath()), patience);
        QCOMPARE(VelmoraSettings::searchConsent(), SearchConsent::refused);
        QVERIFY(Waiting::staysTrue(
            [] { return !QFile::exists(databasePath()) && !isOfferedToDesktop(); }, 1500ms));
        QVERIFY(!alert());
        // Names are still found.
        window->searchFor(u"old"_s);
        QTRY_COMPARE_WITH_TIMEOUT(window->searchView()->rows().size(), 1, patience);
    }

    void whatTheLastEndLeftOfDeletedTextsIsDeleted()
    {
        VelmoraSettings::setSearchConsent(SearchConsent::refused);
        QVERIFY(QDir().mkpath(QFileInfo(databasePath()).path()));
        QFile left(databasePath());
        QVERIFY(left.open(QFile::WriteOnly));
        left.close();
        AppRig rig;
        rig.launch();
        QTRY_VERIFY_WITH_TIMEOUT(!left.exists(), patience);
        QCOMPARE(VelmoraSettings::searchConsent(), SearchConsent::refused);
    }

    void whatIsDeletedRightAfterTheLaunchDoesNotComeBack()
    {
        VelmoraSettings::setSearchConsent(SearchConsent::given);
        AppRig rig;
        rig.take(u"old.png"_s);
        rig.launch();
        Q_EMIT openRecent(rig)->deletionWanted();
        QCOMPARE(VelmoraSettings::searchConsent(), SearchConsent::refused);
        QVERIFY(Waiting::staysTrue(
            [] { return !QFile::exists(databasePath()) && !isOfferedToDesktop(); }, 7000ms));
    }
};

VELMORA_WIDGETS_TEST(SearchTest)
#include "SearchTest.moc"
