// SPDX-License-Identifier: MIT
#include "tests/files/recent/RecentWindowFixture.h"

#include "core/VelmoraSettings.h"
#include "style/BezelButton.h"
#include "style/ImageView.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QDateTime>
#include <QScreen>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

using Kind = RecentScreenshotAction::Kind;

} // namespace

class RecentScreenshotsWindowTest : public QObject, RecentWindowFixture
{
    Q_OBJECT

    QSemaphore m_mayList; ///< permits listings, in tests that count them

    QUrl picture(const QString &name, QColor color, int minutes) const
    {
        return RecentWindowFixture::picture(name, QSize(320, 240), color, minutes);
    }
    QStringList names() const
    {
        QStringList names;
        for (const RecentScreenshotRow *row : window().view()->rows())
            names << FileUrls::lastPathComponent(row->url());
        return names;
    }
    /// Null if there is no such row.
    QImage thumbnail(int row) const
    {
        const RecentScreenshotRow *found = window().view()->rows().value(row);
        return found ? found->thumbnail()->image() : QImage();
    }
    BezelButton *button(int row, int number) const
    {
        return window().view()->rows().at(row)->findChildren<BezelButton *>().at(number);
    }
    void makeController()
    {
        m_controller = std::make_unique<RecentScreenshotsController>(
            RecentScreenshotsController::Services{*m_actions, m_images}, *m_recent);
    }

private Q_SLOTS:
    void init()
    {
        VelmoraSettings::open().clear();
        begin();
        makeController();
    }
    void cleanup()
    {
        m_mayList.release(100);
        end();
        m_mayList.acquire(m_mayList.available());
    }

    void thereIsNoWindowBeforeItIsAskedFor() { QVERIFY(!m_controller->window()); }

    void itIsAFloatingWindowInTheMiddle()
    {
        showWindow();
        QCOMPARE(window().windowTitle(), u"Recent Screenshots"_s);
        QCOMPARE(window().size(), QSize(620, 460));
        const QPoint center = window().frameGeometry().center();
        const QPoint middle = window().screen()->availableGeometry().center();
        QVERIFY((center - middle).manhattanLength() <= 12);
        const QString state = XDesktop::property(window().winId(), u"_NET_WM_STATE"_s);
        QVERIFY2(state.contains(u"_NET_WM_STATE_ABOVE"_s), qPrintable(state));
        QCOMPARE(XDesktop::activeWindow(), window().winId());
        QVERIFY(!window().testAttribute(Qt::WA_QuitOnClose));
    }

    void itShowsTheFoldersNewestFiles()
    {
        picture(u"old.png"_s, Qt::red, 9);
        picture(u"new.png"_s, Qt::green, 1);
        showWindow();
        QTRY_COMPARE(names(), (QStringList{u"new.png"_s, u"old.png"_s}));
    }

    void aClosedWindowIsHiddenAndTheSameOneShownAgain()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{u"a.png"_s});
        RecentScreenshotsWindow *first = &window();
        const QPoint place(90, 120);
        window().move(place);
        QTRY_COMPARE(window().pos(), place);
        window().close();
        QVERIFY(!window().isVisible());
        picture(u"b.png"_s, Qt::blue, 1);
        showWindow();
        QCOMPARE(&window(), first);
        QTRY_COMPARE(names(), (QStringList{u"b.png"_s, u"a.png"_s}));
        QCOMPARE(window().pos(), place);
    }

    void aMinimisedWindowComesBack()
    {
        showWindow();
        window().showMinimized();
        QTRY_VERIFY(XDesktop::activeWindow() != window().winId());
        m_controller->show();
        QVERIFY(!window().isMinimized());
        QTRY_COMPARE(XDesktop::activeWindow(), window().winId());
    }

    void itsStandardKeyClosesIt()
    {
        showWindow();
        QTest::keySequence(&window(), QKeySequence(QKeySequence::Close));
        QTRY_VERIFY(!window().isVisible());
    }

    void aNewScreenshotAppearsWhileItIsShown()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{u"a.png"_s});
        m_recent->add(picture(u"b.png"_s, Qt::blue, 1));
        QTRY_COMPARE(names(), (QStringList{u"b.png"_s, u"a.png"_s}));
    }

    void anotherFolderReplacesTheContent()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{u"a.png"_s});
        const TestFiles elsewhere;
        elsewhere.make(u"elsewhere.png"_s);
        m_folder = elsewhere.folder();
        m_recent->refresh();
        QTRY_COMPARE(names(), QStringList{u"elsewhere.png"_s});
        QCOMPARE(window().view()->folder(), m_folder);
    }

    void theFormerFolderIsShownWholeUntilTheNewOneIsListed()
    {
        m_mayList.release();
        m_controller.reset();
        m_recent = std::make_unique<RecentScreenshots>(ScreenshotFolderAccess{
            [this] { return m_folder; },
            [this](const QUrl &folder, int limit) {
                m_mayList.acquire();
                return ScreenshotFolderResolver::recentScreenshotFiles(folder, limit);
            },
            ScreenshotFolderResolver::modificationDate});
        makeController();
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{u"a.png"_s});
        const QUrl former = m_folder;
        const TestFiles elsewhere;
        elsewhere.make(u"elsewhere.png"_s);
        m_folder = elsewhere.folder();
        m_controller->show();
        const auto isMixed = [&] {
            return window().view()->folder() != former || names() != QStringList{u"a.png"_s};
        };
        QVERIFY(!QTest::qWaitFor(isMixed, 500));
        window().close();
        m_controller->show();
        QVERIFY(!QTest::qWaitFor(isMixed, 500));
        m_mayList.release(2);
        QTRY_COMPARE(names(), QStringList{u"elsewhere.png"_s});
        QCOMPARE(window().view()->folder(), elsewhere.folder());
    }

    void aListThatIsOfAnotherFolderIsNotShownUnderTheFirstName()
    {
        const TestFiles elsewhere;
        m_recent->add(picture(u"a.png"_s, Qt::red, 5));
        m_folder = elsewhere.folder();
        m_controller->show();
        QCOMPARE(window().view()->folder(), elsewhere.folder());
        QCOMPARE(names(), QStringList());
    }

    void aThumbnailIsTheFilesPicture()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QVERIFY(!thumbnail(0).isNull());
        QTRY_COMPARE(thumbnail(0).size(), QSize(64, 48));
        QCOMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::red));
    }

    void aThumbnailThatIsKnownIsThereAtOnce()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(thumbnail(0).size(), QSize(64, 48));
        const RecentScreenshotsView *before = window().view();
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        QImage shownAtOnce;
        connect(m_recent.get(), &RecentScreenshots::refreshed, this,
                [&] { shownAtOnce = thumbnail(1); });
        m_recent->add(picture(u"b.png"_s, Qt::blue, 1));
        QTRY_VERIFY(!refreshed.isEmpty());
        disconnect(m_recent.get(), nullptr, this, nullptr);
        QVERIFY(window().view() != before);
        QCOMPARE(shownAtOnce.pixelColor(30, 20), QColor(Qt::red));
        QCOMPARE(shownAtOnce.size(), QSize(64, 48));
    }

    void aFileThatIsWrittenAnewShowsItsNewPicture()
    {
        picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::red));
        picture(u"a.png"_s, Qt::blue, 4);
        m_recent->refresh();
        QTRY_COMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::blue));
    }

    void whatIsNoPictureShowsItsIcon()
    {
        m_files->make(u"broken.png"_s, "no picture at all");
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        const QImage icon = thumbnail(0);
        QCOMPARE(icon.size(), QSize(48, 48));
        // A picture further down has been read by then, so the broken one has been tried.
        picture(u"whole.png"_s, Qt::red, 9);
        m_recent->refresh();
        QTRY_COMPARE(names().size(), 2);
        QTRY_COMPARE(thumbnail(1).pixelColor(30, 20), QColor(Qt::red));
        QCOMPARE(thumbnail(0), icon);
    }

    void copyingPutsPictureAndFileThereWhateverTheSetting()
    {
        const QUrl file = picture(u"a.png"_s, Qt::red, 5);
        QVERIFY(VelmoraSettings::copyBehavior() == CopyBehavior::none);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QTest::mouseClick(button(0, 0), Qt::LeftButton);
        QTRY_VERIFY(m_pasteboard.contents);
        QCOMPARE(m_pasteboard.contents->file, file);
        QCOMPARE(m_pasteboard.contents->picture->bytes, TestFiles::read(file));
    }

    void revealingAsksTheFileBrowser()
    {
        const QUrl file = picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QTest::mouseClick(button(0, 1), Qt::LeftButton);
        QCOMPARE(m_browser.revealed, QList<QUrl>{file});
    }

    void trashingTakesTheFileOutAndCanBeUndone()
    {
        const QUrl file = picture(u"a.png"_s, Qt::red, 5);
        picture(u"b.png"_s, Qt::blue, 9);
        showWindow();
        QTRY_COMPARE(names().size(), 2);
        QTest::mouseClick(button(0, 2), Qt::LeftButton);
        QTRY_COMPARE(names(), QStringList{u"b.png"_s});
        QVERIFY(!FileUrls::exists(file));
        QCOMPARE(m_history->title(), u"Undo Trash"_s);
        m_actions->undoLast();
        QTRY_VERIFY(FileUrls::exists(file));
        m_recent->add(file);
        QTRY_COMPARE(names(), (QStringList{u"a.png"_s, u"b.png"_s}));
    }

    void aTrashThatFailsChangesNothing()
    {
        const QUrl file = picture(u"a.png"_s, Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QVERIFY(QFile::remove(file.toLocalFile()));
        const RecentScreenshotsView *view = window().view();
        QTest::mouseClick(button(0, 2), Qt::LeftButton);
        QVERIFY(m_actions->finish(std::chrono::seconds(10)));
        QVERIFY(!m_history->canUndo());
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
        QCOMPARE(window().view(), view);
    }

    void trashingOneAfterTheOtherByTheKeyboard()
    {
        for (int i = 1; i <= 3; ++i)
            picture(u"%1.png"_s.arg(i), Qt::red, i);
        showWindow();
        QTRY_COMPARE(names().size(), 3);
        QCOMPARE(window().view()->focusedButton(), -1);
        button(0, 2)->setFocus(Qt::TabFocusReason);
        for (int left = 2; left >= 0; --left) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
            QTRY_COMPARE(names().size(), left);
        }
        QCOMPARE(m_history->actions().size(), 3);
    }

    void theListStaysWhereItIsScrolled()
    {
        for (int i = 1; i <= 10; ++i)
            picture(u"%1.png"_s.arg(i), Qt::red, i);
        showWindow();
        QTRY_COMPARE(names().size(), 10);
        window().view()->setScrollPosition(200);
        const RecentScreenshotsView *before = window().view();
        QTest::mouseClick(button(9, 2), Qt::LeftButton);
        QTRY_VERIFY(window().view() != before);
        QCOMPARE(window().view()->scrollPosition(), 200);
    }
};

VELMORA_WIDGETS_TEST(RecentScreenshotsWindowTest)
#include "RecentScreenshotsWindowTest.moc"
