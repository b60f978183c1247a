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

using namespace Qt::StringLiterals;

using TrayOnScreen::thumbnail;

class RowNameTest : public QObject, RowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aSuggestionRenamesTheFileByItself()
    {
        suggest("chrome-pull-request.png");
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"chrome-pull-request.png"_s});
        QCOMPARE(name()->text(), u"chrome-pull-request.png"_s);
        QCOMPARE(status(), u"Renamed automatically"_s);
        QCOMPARE(m_row->fileURL(), m_rig->place(u"chrome-pull-request.png"_s));
        QCOMPARE(thumbnail(m_row)->fileURL(), m_row->fileURL());

        const auto renames = sent<ScreenshotRowAction::Renamed>();
        QCOMPARE(renames.size(), 1);
        QCOMPARE(renames[0].result, (RenameResult{m_url, m_row->fileURL()}));
        QCOMPARE(m_actions[0].id, m_id);
        QTRY_COMPARE_WITH_TIMEOUT(status(), QString(), 4000);
    }

    void aSuggestionWithoutRenameOnlyFillsTheField()
    {
        m_row->updateSuggestedFilename(u"later.png"_s, false);
        QCOMPARE(name()->text(), u"later.png"_s);
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
        QVERIFY(m_actions.isEmpty());
    }

    void oneTypedCharacterKeepsSuggestionsAway()
    {
        name()->setFocus();
        QTest::keyClicks(name(), u"z"_s);
        const QString typed = name()->text();
        suggest("chrome-pull-request.png");
        QCOMPARE(name()->text(), typed);
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
        QVERIFY(m_actions.isEmpty());
    }

    void pastingKeepsSuggestionsAwayToo()
    {
        name()->setFocus();
        QTest::keyClick(name(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(name(), Qt::Key_X, Qt::ControlModifier);
        suggest("chrome-pull-request.png");
        QCOMPARE(name()->text(), QString());
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
    }

    void returnCommitsTheNameOnce()
    {
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), u"Foo"_s);
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"foo.png"_s});
        QCOMPARE(name()->text(), u"foo.png"_s);
        QCOMPARE(status(), u"Saved as foo.png"_s);
        QCOMPARE(sent<ScreenshotRowAction::Renamed>().size(), 1);
        QCOMPARE(m_actions.size(), 1);
    }

    void leavingTheFieldCommitsTheName()
    {
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), u"left"_s);
        QTest::keyClick(name(), Qt::Key_Tab);
        QVERIFY(button("Copy")->hasFocus());
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"left.png"_s});
        QCOMPARE(m_actions.size(), 1);
    }

    void aTakenNameGetsANumber()
    {
        m_rig->screenshot(u"foo.png"_s);
        m_rig->screenshot(u"foo-2.png"_s);
        name()->setText(u"foo"_s);
        const auto result = rename();
        QVERIFY(result);
        QCOMPARE(result->newURL, m_rig->place(u"foo-3.png"_s));
        QCOMPARE(name()->text(), u"foo-3.png"_s);
        QCOMPARE(status(), u"Saved as foo-3.png"_s);
        QCOMPARE(m_rig->filesInFolder().size(), 3);
    }

    void theFilesOwnNameChangesNothing()
    {
        name()->setText(u"first"_s);
        QVERIFY(rename());
        const QString shown = status();
        name()->setText(u"  First  "_s);
        QVERIFY(!rename());
        QCOMPARE(name()->text(), u"first.png"_s);
        QCOMPARE(status(), shown);
        QVERIFY(m_actions.isEmpty());
    }

    void anEmptyNameIsTheFilesOwn()
    {
        name()->setText(u"first"_s);
        QVERIFY(rename());
        name()->clear();
        QVERIFY(!rename());
        QCOMPARE(name()->text(), u"first.png"_s);
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"first.png"_s});
    }

    void aNameWhoseCleanFormIsNotStableIsCommittedOnce_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("taken");
        QTest::addColumn<QString>("got");
        QTest::newRow("eight parts")
            << u"a b c d e f g h"_s << u"a-b-c-d-e-f-g-h.png"_s << u"a-b-c-d-e-f-g-h-2.png"_s;
        const QString longest(58, u'x');
        QTest::newRow("58 characters") << longest << longest + u".png"_s << longest + u"-2.png"_s;
        const QString cut = QString(57, u'x') + u'-';
        QTest::newRow("a cut that ends in a hyphen")
            << cut + u"yyy"_s << cut + u".png"_s << cut + u"-2.png"_s;
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
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
        QCOMPARE(status(), QString());
        QVERIFY(m_actions.isEmpty());
    }

    void aRenameThatIsAskedForAgainWhileItIsDoneIsDoneOnce()
    {
        name()->setText(u"foo"_s);
        int renames = 0;
        const auto count = [&renames](const RenameResult &) { ++renames; };
        m_row->renameFile(std::nullopt, count);
        m_row->renameFile(std::nullopt, count);
        m_rig->settle();
        QCOMPARE(renames, 1);
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"foo.png"_s});
    }

    void twoNamesAreGivenOneAfterTheOther()
    {
        type("one");
        QTest::keyClick(name(), Qt::Key_Return);
        type("two");
        QTest::keyClick(name(), Qt::Key_Return);
        QStringList shown;
        connect(name(), &QLineEdit::textChanged, this,
                [&shown](const QString &text) { shown.append(text); });
        m_rig->settle();
        QCOMPARE(shown, QStringList{u"two.png"_s});
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"two.png"_s});
        QCOMPARE(name()->text(), u"two.png"_s);
        const auto renames = sent<ScreenshotRowAction::Renamed>();
        QCOMPARE(renames.size(), 2);
        QCOMPARE(renames[1].result.oldURL, m_rig->place(u"one.png"_s));
    }

    void theFormerNameTypedAgainDuringARenameIsGivenBack()
    {
        name()->setText(u"first"_s);
        QVERIFY(rename());
        type("one");
        QTest::keyClick(name(), Qt::Key_Return);
        type("first.png");
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"first.png"_s});
        QCOMPARE(name()->text(), u"first.png"_s);
    }

    void aNameBegunWhileTheFileIsWrittenKeepsTheSuggestionAway()
    {
        const QUrl url = m_rig->screenshot(u"Slow.png"_s);
        QFile writer(url.toLocalFile());
        QVERIFY(writer.open(QFile::ReadWrite));
        show(url);
        m_row->updateSuggestedFilename(u"chrome-pull-request.png"_s, true);
        type("z");
        writer.close();
        m_rig->settle();
        QCOMPARE(name()->text(), u"z"_s);
        QCOMPARE(m_rig->filesInFolder(), (QStringList{u"Shot.png"_s, u"Slow.png"_s}));
    }

    void whatTheUserTypesWhileTheFileIsRenamedStays()
    {
        m_row->updateSuggestedFilename(u"suggested.png"_s, true);
        QTRY_VERIFY(m_rig->filesInFolder() == QStringList{u"suggested.png"_s} ||
                    name()->text() == u"suggested.png"_s);
        type("mine");
        m_rig->settle();
        QCOMPARE(name()->text(), u"mine"_s);
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"mine.png"_s});
    }

    void whatTakesLongIsShownUntilItsEnd()
    {
        Q_EMIT m_row->screenshot()->takesLong(u"Renaming..."_s);
        QCOMPARE(status(), u"Renaming..."_s);
        type("foo");
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(), u"Saved as foo.png"_s);
    }

    void theFirstNameDoesNotHideThatTextIsBeingRead()
    {
        m_row->updateSuggestedFilename(u"app-screen.png"_s, true);
        m_row->setStatus(u"Reading screen text..."_s);
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"app-screen.png"_s});
        QCOMPARE(status(), u"Reading screen text..."_s);
        suggest("better.png");
        QCOMPARE(status(), u"Renamed automatically"_s);
    }

    void aFailedRenameKeepsThePlaceAndTheUndo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), u"foo"_s);
        QTest::keyClick(name(), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_row->fileURL(), m_url);
        QCOMPARE(name()->text(), u"Shot.png"_s);
        QCOMPARE(status(), u"Rename failed"_s);
        QVERIFY(button("Undo")->isHidden());
        QVERIFY(m_actions.isEmpty());
    }

    void aUsersRenameKeepsItsStatus()
    {
        m_row->setStatus(u"Copied"_s);
        name()->setText(u"foo"_s);
        QVERIFY(rename());
        bool older = false;
        QTimer::singleShot(2500, this, [&older] { older = true; });
        QTRY_VERIFY(older);
        QCOMPARE(status(), u"Saved as foo.png"_s);
    }
};

VELMORA_WIDGETS_TEST(RowNameTest)
#include "RowNameTest.moc"
