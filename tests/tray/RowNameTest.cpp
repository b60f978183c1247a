// SPDX-License-Identifier: MIT
#include "tests/tray/RowFixture.h"

#include "style/BezelButton.h"
#include "tests/world/TestProgram.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QFile>
#include <QTest>
#include <QTimer>

using TrayOnScreen::thumbnail;

namespace
{

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

} // namespace

class RowNameTest : public QObject, RowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aSuggestionRenamesTheFileByItself()
    {
        suggest("chrome-pull-request.png");
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("chrome-pull-request.png")});
        QCOMPARE(name()->text(), text("chrome-pull-request.png"));
        QCOMPARE(status(), text("Renamed automatically"));
        QCOMPARE(m_row->fileURL(), m_rig->place(text("chrome-pull-request.png")));
        QCOMPARE(thumbnail(m_row)->fileURL(), m_row->fileURL());

        const auto renames = sent<ScreenshotRowAction::Renamed>();
        QCOMPARE(renames.size(), 1);
        QCOMPARE(renames[0].result, (RenameResult{m_url, m_row->fileURL()}));
        QCOMPARE(m_actions[0].id, m_id);
        QTRY_COMPARE_WITH_TIMEOUT(status(), QString(), 4000);
    }

    void aSuggestionWithoutRenameOnlyFillsTheField()
    {
        m_row->updateSuggestedFilename(text("later.png"), false);
        QCOMPARE(name()->text(), text("later.png"));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QVERIFY(m_actions.isEmpty());
    }

    void oneTypedCharacterKeepsSuggestionsAway()
    {
        name()->setFocus();
        QTest::keyClicks(name(), text("z"));
        const QString typed = name()->text();
        suggest("chrome-pull-request.png");
        QCOMPARE(name()->text(), typed);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QVERIFY(m_actions.isEmpty());
    }

    void pastingKeepsSuggestionsAwayToo()
    {
        name()->setFocus();
        QTest::keyClick(name(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(name(), Qt::Key_X, Qt::ControlModifier);
        suggest("chrome-pull-request.png");
        QCOMPARE(name()->text(), QString());
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
    }

    void returnCommitsTheNameOnce()
    {
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), text("Foo"));
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("foo.png")});
        QCOMPARE(name()->text(), text("foo.png"));
        QCOMPARE(status(), text("Saved as foo.png"));
        QCOMPARE(sent<ScreenshotRowAction::Renamed>().size(), 1);
        QCOMPARE(m_actions.size(), 1);
    }

    void leavingTheFieldCommitsTheName()
    {
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), text("left"));
        QTest::keyClick(name(), Qt::Key_Tab);
        QVERIFY(button("Copy")->hasFocus());
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("left.png")});
        QCOMPARE(m_actions.size(), 1);
    }

    void aTakenNameGetsANumber()
    {
        m_rig->screenshot(text("foo.png"));
        m_rig->screenshot(text("foo-2.png"));
        name()->setText(text("foo"));
        const auto result = rename();
        QVERIFY(result);
        QCOMPARE(result->newURL, m_rig->place(text("foo-3.png")));
        QCOMPARE(name()->text(), text("foo-3.png"));
        QCOMPARE(status(), text("Saved as foo-3.png"));
        QCOMPARE(m_rig->filesInFolder().size(), 3);
    }

    void theFilesOwnNameChangesNothing()
    {
        name()->setText(text("first"));
        QVERIFY(rename());
        const QString shown = status();
        name()->setText(text("  First  "));
        QVERIFY(!rename());
        QCOMPARE(name()->text(), text("first.png"));
        QCOMPARE(status(), shown);
        QVERIFY(m_actions.isEmpty());
    }

    void anEmptyNameIsTheFilesOwn()
    {
        name()->setText(text("first"));
        QVERIFY(rename());
        name()->clear();
        QVERIFY(!rename());
        QCOMPARE(name()->text(), text("first.png"));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("first.png")});
    }

    void aNameWhoseCleanFormIsNotStableIsCommittedOnce_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("taken");
        QTest::addColumn<QString>("got");
        QTest::newRow("eight parts") << text("a b c d e f g h") << text("a-b-c-d-e-f-g-h.png")
                                     << text("a-b-c-d-e-f-g-h-2.png");
        const QString longest(58, u'x');
        QTest::newRow("58 characters")
            << longest << longest + text(".png") << longest + text("-2.png");
        const QString cut = QString(57, u'x') + u'-';
        QTest::newRow("a cut that ends in a hyphen")
            << cut + text("yyy") << cut + text(".png") << cut + text("-2.png");
    }

    void aNameWhoseCleanFormIsNotStableIsCommittedOnce()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, taken);
        QFETCH(const QString, got);
        m_rig->screenshot(taken);
        type(qUtf8Printable(typed));
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QTest::keyClick(name(), Qt::Key_Tab);
        m_rig->settle();
        QCOMPARE(name()->text(), got);
        QCOMPARE(m_rig->filesInFolder().size(), 2);
        QVERIFY(m_rig->filesInFolder().contains(got));
        QCOMPARE(sent<ScreenshotRowAction::Renamed>().size(), 1);
        // Nor when the whole name is typed again.
        type(qUtf8Printable(got));
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QVERIFY(m_rig->filesInFolder().contains(got));
        QCOMPARE(sent<ScreenshotRowAction::Renamed>().size(), 1);
    }

    void theFilesOwnNameIsKeptEvenWhereItIsNotClean()
    {
        type("Shot.png");
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QCOMPARE(status(), QString());
        QVERIFY(m_actions.isEmpty());
    }

    void aRenameThatIsAskedForAgainWhileItIsDoneIsDoneOnce()
    {
        name()->setText(text("foo"));
        int renames = 0;
        const auto count = [&renames](const RenameResult &) { ++renames; };
        m_row->renameFile(std::nullopt, count);
        m_row->renameFile(std::nullopt, count);
        m_rig->settle();
        QCOMPARE(renames, 1);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("foo.png")});
    }

    void twoNamesAreGivenOneAfterTheOther()
    {
        type("one");
        QTest::keyClick(name(), Qt::Key_Return);
        type("two");
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("two.png")});
        QCOMPARE(name()->text(), text("two.png"));
        const auto renames = sent<ScreenshotRowAction::Renamed>();
        QCOMPARE(renames.size(), 2);
        QCOMPARE(renames[1].result.oldURL, m_rig->place(text("one.png")));
    }

    void whatTheUserTypesWhileTheFileIsRenamedStays()
    {
        m_row->updateSuggestedFilename(text("suggested.png"), true);
        QTRY_VERIFY(m_rig->filesInFolder() == QStringList{text("suggested.png")} ||
                    name()->text() == text("suggested.png"));
        type("mine");
        m_rig->settle();
        QCOMPARE(name()->text(), text("mine"));
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("mine.png")});
    }

    void whatTakesLongIsShownUntilItsEnd()
    {
        Q_EMIT m_row->screenshot()->takesLong(text("Renaming..."));
        QCOMPARE(status(), text("Renaming..."));
        type("foo");
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(), text("Saved as foo.png"));
    }

    void theFirstNameDoesNotHideThatTextIsBeingRead()
    {
        m_row->updateSuggestedFilename(text("app-screen.png"), true);
        m_row->setStatus(text("Reading screen text..."));
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("app-screen.png")});
        QCOMPARE(status(), text("Reading screen text..."));
        suggest("better.png");
        QCOMPARE(status(), text("Renamed automatically"));
    }

    void aFailedRenameKeepsThePlaceAndTheUndo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), text("foo"));
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_row->fileURL(), m_url);
        QCOMPARE(name()->text(), text("Shot.png"));
        QCOMPARE(status(), text("Rename failed"));
        QVERIFY(button("Undo")->isHidden());
        QVERIFY(m_actions.isEmpty());
    }

    void aUsersRenameKeepsItsStatus()
    {
        m_row->setStatus(text("Copied"));
        name()->setText(text("foo"));
        QVERIFY(rename());
        bool older = false;
        QTimer::singleShot(2500, this, [&older] { older = true; });
        QTRY_VERIFY(older);
        QCOMPARE(status(), text("Saved as foo.png"));
    }
};

VELMORA_WIDGETS_TEST(RowNameTest)
#include "RowNameTest.moc"
