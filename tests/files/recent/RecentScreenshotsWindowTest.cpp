// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsWindow.h"

#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolderResolver.h"
#include "files/ScreenshotActions.h"
#include "files/UndoHistory.h"
#include "files/recent/RecentScreenshots.h"
#include "files/recent/RecentScreenshotsController.h"
#include "imaging/ScreenshotImages.h"
#include "platform/FileBrowser.h"
#include "platform/FileWriters.h"
#include "style/BezelButton.h"
#include "style/ImageView.h"
#include "tests/fakes/FakeDesktopRecords.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QDateTime>
#include <QScreen>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

using Kind = RecentScreenshotAction::Kind;

} // namespace

class RecentScreenshotsWindowTest : public QObject
{
    Q_OBJECT

    const std::unique_ptr<FileWriters> m_writers = makeFileWriters();
    ScreenshotImages m_images{*m_writers};
    std::unique_ptr<TestFiles> m_files;
    QUrl m_folder;
    QSemaphore m_mayList; ///< permits listings, in tests that count them
    FakeFileBrowser m_browser;
    FakeDesktopRecords m_records;
    FakePasteboard m_pasteboard;
    std::unique_ptr<FakeSystemTrash> m_trash;
    std::unique_ptr<RecentScreenshots> m_recent;
    std::unique_ptr<UndoHistory> m_history;
    std::unique_ptr<ScreenshotActions> m_actions;
    std::unique_ptr<RecentScreenshotsController> m_controller;

    /// A picture of one colour that was last modified this many minutes ago.
    QUrl picture(const QString &name, QColor color, int minutes) const
    {
        QImage image(320, 240, QImage::Format_RGB32);
        image.fill(color);
        const QUrl url = m_files->url(name);
        if (!image.save(url.toLocalFile(), "png"))
            qFatal("can't write a picture");
        age(url, minutes);
        return url;
    }
    static void age(const QUrl &url, int minutes)
    {
        QFile file(url.toLocalFile());
        if (!file.open(QFile::ReadWrite) ||
            !file.setFileTime(QDateTime::currentDateTime().addSecs(-60LL * minutes),
                              QFileDevice::FileModificationTime))
            qFatal("can't set a time");
    }
    RecentScreenshotsWindow &window() const { return *m_controller->window(); }
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
    void showWindow() const
    {
        m_controller->show();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
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
        m_files = std::make_unique<TestFiles>();
        m_folder = m_files->folder();
        m_browser.revealed.clear();
        m_pasteboard.contents.reset();
        m_trash = std::make_unique<FakeSystemTrash>();
        m_recent = std::make_unique<RecentScreenshots>(ScreenshotFolderAccess{
            [this] { return m_folder; }, ScreenshotFolderResolver::recentScreenshotFiles,
            ScreenshotFolderResolver::modificationDate});
        m_history = std::make_unique<UndoHistory>();
        m_actions = std::make_unique<ScreenshotActions>(
            ScreenshotActions::Services{*m_trash, m_pasteboard, m_browser, m_images, m_records},
            *m_history);
        makeController();
    }
    void cleanup()
    {
        m_mayList.release(100);
        m_controller.reset();
        m_actions.reset();
        m_recent.reset();
        m_mayList.acquire(m_mayList.available());
    }

    void thereIsNoWindowBeforeItIsAskedFor() { QVERIFY(!m_controller->window()); }

    void itIsAFloatingWindowInTheMiddle()
    {
        showWindow();
        QCOMPARE(window().windowTitle(), s("Recent Screenshots"));
        QCOMPARE(window().size(), QSize(620, 460));
        const QPoint center = window().frameGeometry().center();
        const QPoint middle = window().screen()->availableGeometry().center();
        QVERIFY((center - middle).manhattanLength() <= 12);
        const QString state = XDesktop::property(window().winId(), s("_NET_WM_STATE"));
        QVERIFY2(state.contains(s("_NET_WM_STATE_ABOVE")), qPrintable(state));
        QCOMPARE(XDesktop::activeWindow(), window().winId());
        QVERIFY(!window().testAttribute(Qt::WA_QuitOnClose));
    }

    void itShowsTheFoldersNewestFiles()
    {
        picture(s("old.png"), Qt::red, 9);
        picture(s("new.png"), Qt::green, 1);
        showWindow();
        QTRY_COMPARE(names(), (QStringList{s("new.png"), s("old.png")}));
    }

    void aClosedWindowIsHiddenAndTheSameOneShownAgain()
    {
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{s("a.png")});
        RecentScreenshotsWindow *first = &window();
        const QPoint place(90, 120);
        window().move(place);
        QTRY_COMPARE(window().pos(), place);
        window().close();
        QVERIFY(!window().isVisible());
        picture(s("b.png"), Qt::blue, 1);
        showWindow();
        QCOMPARE(&window(), first);
        QTRY_COMPARE(names(), (QStringList{s("b.png"), s("a.png")}));
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
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{s("a.png")});
        m_recent->add(picture(s("b.png"), Qt::blue, 1));
        QTRY_COMPARE(names(), (QStringList{s("b.png"), s("a.png")}));
    }

    void anotherFolderReplacesTheContent()
    {
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{s("a.png")});
        const TestFiles elsewhere;
        elsewhere.make(s("elsewhere.png"));
        m_folder = elsewhere.folder();
        m_recent->refresh();
        QTRY_COMPARE(names(), QStringList{s("elsewhere.png")});
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
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names(), QStringList{s("a.png")});
        const QUrl former = m_folder;
        const TestFiles elsewhere;
        elsewhere.make(s("elsewhere.png"));
        m_folder = elsewhere.folder();
        m_controller->show();
        const auto isMixed = [&] {
            return window().view()->folder() != former || names() != QStringList{s("a.png")};
        };
        QVERIFY(!QTest::qWaitFor(isMixed, 500));
        window().close();
        m_controller->show();
        QVERIFY(!QTest::qWaitFor(isMixed, 500));
        m_mayList.release(2);
        QTRY_COMPARE(names(), QStringList{s("elsewhere.png")});
        QCOMPARE(window().view()->folder(), elsewhere.folder());
    }

    void aListThatIsOfAnotherFolderIsNotShownUnderTheFirstName()
    {
        const TestFiles elsewhere;
        m_recent->add(picture(s("a.png"), Qt::red, 5));
        m_folder = elsewhere.folder();
        m_controller->show();
        QCOMPARE(window().view()->folder(), elsewhere.folder());
        QCOMPARE(names(), QStringList());
    }

    void aThumbnailIsTheFilesPicture()
    {
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QVERIFY(!thumbnail(0).isNull());
        QTRY_COMPARE(thumbnail(0).size(), QSize(64, 48));
        QCOMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::red));
    }

    void aThumbnailThatIsKnownIsThereAtOnce()
    {
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(thumbnail(0).size(), QSize(64, 48));
        const RecentScreenshotsView *before = window().view();
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        QImage shownAtOnce;
        connect(m_recent.get(), &RecentScreenshots::refreshed, this,
                [&] { shownAtOnce = thumbnail(1); });
        m_recent->add(picture(s("b.png"), Qt::blue, 1));
        QTRY_VERIFY(!refreshed.isEmpty());
        disconnect(m_recent.get(), nullptr, this, nullptr);
        QVERIFY(window().view() != before);
        QCOMPARE(shownAtOnce.pixelColor(30, 20), QColor(Qt::red));
        QCOMPARE(shownAtOnce.size(), QSize(64, 48));
    }

    void aFileThatIsWrittenAnewShowsItsNewPicture()
    {
        picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::red));
        picture(s("a.png"), Qt::blue, 4);
        m_recent->refresh();
        QTRY_COMPARE(thumbnail(0).pixelColor(30, 20), QColor(Qt::blue));
    }

    void whatIsNoPictureShowsItsIcon()
    {
        m_files->make(s("broken.png"), "no picture at all");
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        const QImage icon = thumbnail(0);
        QCOMPARE(icon.size(), QSize(48, 48));
        // A picture further down has been read by then, so the broken one has been tried.
        picture(s("whole.png"), Qt::red, 9);
        m_recent->refresh();
        QTRY_COMPARE(names().size(), 2);
        QTRY_COMPARE(thumbnail(1).pixelColor(30, 20), QColor(Qt::red));
        QCOMPARE(thumbnail(0), icon);
    }

    void copyingPutsPictureAndFileThereWhateverTheSetting()
    {
        const QUrl file = picture(s("a.png"), Qt::red, 5);
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
        const QUrl file = picture(s("a.png"), Qt::red, 5);
        showWindow();
        QTRY_COMPARE(names().size(), 1);
        QTest::mouseClick(button(0, 1), Qt::LeftButton);
        QCOMPARE(m_browser.revealed, QList<QUrl>{file});
    }

    void trashingTakesTheFileOutAndCanBeUndone()
    {
        const QUrl file = picture(s("a.png"), Qt::red, 5);
        picture(s("b.png"), Qt::blue, 9);
        showWindow();
        QTRY_COMPARE(names().size(), 2);
        QTest::mouseClick(button(0, 2), Qt::LeftButton);
        QTRY_COMPARE(names(), QStringList{s("b.png")});
        QVERIFY(!FileUrls::exists(file));
        QCOMPARE(m_history->title(), s("Undo Trash"));
        m_actions->undoLast();
        QTRY_VERIFY(FileUrls::exists(file));
        m_recent->add(file);
        QTRY_COMPARE(names(), (QStringList{s("a.png"), s("b.png")}));
    }

    void aTrashThatFailsChangesNothing()
    {
        const QUrl file = picture(s("a.png"), Qt::red, 5);
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
            picture(s("%1.png").arg(i), Qt::red, i);
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
            picture(s("%1.png").arg(i), Qt::red, i);
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
