// SPDX-License-Identifier: MIT
#include "files/recent/SearchField.h"
#include "search/ScreenshotSearch.h"
#include "style/BezelButton.h"
#include "style/ImageView.h"
#include "tests/fakes/FakePowerSource.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/files/recent/RecentWindowFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XDesktop.h"

#include <QDateTime>
#include <QLabel>
#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 20'000;

QStringList textOf(const QImage &picture)
{
    return {u"Page of width %1"_s.arg(picture.width())};
}

} // namespace

/// Searching in the recent screenshots' window, with real files and real keyboard focus.
class RecentSearchTest : public QObject, RecentWindowFixture
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<ScreenshotSearch> m_search;

    QUrl picture(const QString &name, int width, int minutes) const
    {
        return RecentWindowFixture::picture(name, QSize(width, 40), Qt::darkCyan, minutes);
    }
    void showWindow() const
    {
        RecentWindowFixture::showWindow();
        QTRY_VERIFY_WITH_TIMEOUT(m_recent->isListed(), patience);
    }
    /// The rows that the user sees.
    QStringList names() const
    {
        QStringList names;
        const auto rows =
            window().searchView() ? window().searchView()->rows() : window().view()->rows();
        for (const RecentScreenshotRow *row : rows) {
            if (row->isVisible())
                names << FileUrls::lastPathComponent(row->url());
        }
        return names;
    }
    bool says(const QString &text) const
    {
        for (const QLabel *label : window().findChildren<QLabel *>()) {
            if (label->isVisible() && label->text() == text)
                return true;
        }
        return false;
    }
    /// Presses keys in whichever widget has the focus.
    void type(const QString &text) const
    {
        for (const QChar character : text)
            QTest::keyClick(QApplication::focusWidget(), character.toLatin1());
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    BezelButton *button(const QString &title) const
    {
        for (BezelButton *button : window().findChildren<BezelButton *>()) {
            if (button->isVisible() && button->text() == title)
                return button;
        }
        return nullptr;
    }

private Q_SLOTS:
    void init()
    {
        begin();
        m_data = std::make_unique<QTemporaryDir>();
        m_search = std::make_unique<ScreenshotSearch>(
            ScreenshotSearch::Services{std::make_shared<FakeTextRecognizer>(textOf),
                                       std::make_shared<FakePowerSource>(), m_images.budget(),
                                       [](const QUrl &folder) {
                                           return ScreenshotFolderResolver::readableScreenshotFiles(
                                               folder, std::numeric_limits<int>::max());
                                       },
                                       [] { return false; }},
            m_data->filePath(u"velmora"_s));
        m_search->setFolder(m_files->folder());
        connect(m_actions.get(), &ScreenshotActions::trashedFile, m_search.get(),
                [this](const QUrl &from, const QUrl &to) {
                    m_search->moved(from, to, SearchIndex::Place::Trash);
                });
        m_controller = std::make_unique<RecentScreenshotsController>(
            RecentScreenshotsController::Services{*m_actions, m_images, m_search.get()}, *m_recent);
    }
    void cleanup()
    {
        m_controller.reset();
        m_search.reset();
        end();
    }

    void typingFindsScreenshotsBeyondTheTenNewest()
    {
        for (int number = 1; number <= 12; ++number)
            picture(u"holiday-%1.png"_s.arg(number), 60, number);
        picture(u"Lighthouse Budget.png"_s, 60, 100);
        showWindow();
        QTRY_COMPARE_WITH_TIMEOUT(names().size(), 10, patience);
        QVERIFY(!window().searchView());
        type(u"budg"_s);
        QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList{u"Lighthouse Budget.png"_s}, patience);
        QCOMPARE(window().searchView()->field().text(), u"budg"_s);
        QVERIFY(says(u"1 found"_s));
        type(u" light"_s);
        const auto isFound = [this] { return names() == QStringList{u"Lighthouse Budget.png"_s}; };
        QVERIFY(Waiting::staysTrue(isFound, 500ms));
        type(u"x"_s);
        QTRY_VERIFY_WITH_TIMEOUT(says(u"No screenshots found"_s), patience);
    }

    void theLineThatWasFoundStandsBelowTheName()
    {
        picture(u"one.png"_s, 61, 1);
        picture(u"two.png"_s, 62, 2);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_search->progress().result().read, 2, patience);
        showWindow();
        type(u"width 62"_s);
        QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList{u"two.png"_s}, patience);
        QVERIFY(says(u"Page of width 62"_s));
        QVERIFY(says(u"Searching names and text."_s));
    }

    void theWindowLooksAsItDidWhenTheSearchHasEnded_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("escape") << 0;
        QTest::newRow("the last letter") << 1;
        QTest::newRow("closing") << 2;
    }

    void theWindowLooksAsItDidWhenTheSearchHasEnded()
    {
        QFETCH(const int, way);
        picture(u"one.png"_s, 61, 1);
        showWindow();
        QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList{u"one.png"_s}, patience);
        QTRY_VERIFY_WITH_TIMEOUT(!window().view()->rows().at(0)->thumbnail()->image().isNull(),
                                 patience);
        QVERIFY(Waiting::settles([this] { return window().grab().toImage(); }, 500ms));
        const QImage before = window().grab().toImage();
        type(u"o"_s);
        QVERIFY(window().searchView());
        QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList{u"one.png"_s}, patience);
        QVERIFY(window().grab().toImage() != before);
        if (way == 0) {
            press(Qt::Key_Escape);
        } else if (way == 1) {
            press(Qt::Key_Backspace);
        } else {
            window().close();
            showWindow();
        }
        QVERIFY(!window().searchView());
        QTRY_COMPARE_WITH_TIMEOUT(window().grab().toImage(), before, patience);
    }

    void aLetterBeginsTheSearchAlsoFromAButton()
    {
        picture(u"one.png"_s, 61, 1);
        showWindow();
        QTRY_COMPARE_WITH_TIMEOUT(names().size(), 1, patience);
        press(Qt::Key_Tab);
        QVERIFY(qobject_cast<BezelButton *>(QApplication::focusWidget()));
        type(u"on"_s);
        QVERIFY(window().searchView());
        QCOMPARE(window().searchView()->field().text(), u"on"_s);
        press(Qt::Key_Escape);
        press(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(window().searchView());
        QCOMPARE(window().searchView()->field().text(), QString());
    }

    void aSpaceOrAShortcutBeginsNoSearch()
    {
        showWindow();
        press(Qt::Key_Space);
        press(Qt::Key_X, Qt::ControlModifier);
        press(Qt::Key_Down);
        QVERIFY(!window().searchView());
    }

    void whatIsTrashedFromTheSearchIsFoundNoMore()
    {
        picture(u"one.png"_s, 61, 1);
        const QUrl two = picture(u"two.png"_s, 62, 2);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_search->progress().result().read, 2, patience);
        showWindow();
        type(u"page"_s);
        QTRY_COMPARE_WITH_TIMEOUT(names().size(), 2, patience);
        for (RecentScreenshotRow *row : window().searchView()->rows()) {
            if (row->url() == two)
                row->findChildren<BezelButton *>().at(2)->click();
        }
        QTRY_COMPARE_WITH_TIMEOUT(names(), QStringList{u"one.png"_s}, patience);
        QVERIFY(m_history->canUndo());
    }

    void itIsSaidWhatIsSearchedAndTheButtonFits()
    {
        picture(u"one.png"_s, 61, 1);
        showWindow();
        type(u"o"_s);
        QTRY_VERIFY_WITH_TIMEOUT(says(u"Searching names only."_s), patience);
        QSignalSpy wanted(&window(), &RecentScreenshotsWindow::textsWanted);
        QVERIFY(!button(u"Delete Remembered Text"_s));
        button(u"Search Text Too"_s)->click();
        QCOMPARE(wanted.size(), 1);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(says(u"Searching names and text."_s), patience);
        QSignalSpy unwanted(&window(), &RecentScreenshotsWindow::deletionWanted);
        QVERIFY(!button(u"Search Text Too"_s));
        button(u"Delete Remembered Text"_s)->click();
        QCOMPARE(unwanted.size(), 1);
    }
};

VELMORA_WIDGETS_TEST(RecentSearchTest)
#include "RecentSearchTest.moc"
