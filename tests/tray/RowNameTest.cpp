#include "tests/tray/RowFixture.h"

#include "style/BezelButton.h"
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
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
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
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
        QCOMPARE(name()->text(), typed);
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
        QVERIFY(m_actions.isEmpty());
    }

    void pastingKeepsSuggestionsAwayToo()
    {
        name()->setFocus();
        QTest::keyClick(name(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(name(), Qt::Key_X, Qt::ControlModifier);
        m_row->updateSuggestedFilename(text("chrome-pull-request.png"), true);
        QCOMPARE(name()->text(), QString());
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("Shot.png")});
    }

    void returnCommitsTheNameOnce()
    {
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), text("Foo"));
        QTest::keyClick(name(), Qt::Key_Return);
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
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("left.png")});
        QCOMPARE(m_actions.size(), 1);
    }

    void aTakenNameGetsANumber()
    {
        m_rig->screenshot(text("foo.png"));
        m_rig->screenshot(text("foo-2.png"));
        name()->setText(text("foo"));
        const auto result = m_row->renameFile(std::nullopt);
        QVERIFY(result);
        QCOMPARE(result->newURL, m_rig->place(text("foo-3.png")));
        QCOMPARE(name()->text(), text("foo-3.png"));
        QCOMPARE(status(), text("Saved as foo-3.png"));
        QCOMPARE(m_rig->filesInFolder().size(), 3);
    }

    void theFilesOwnNameChangesNothing()
    {
        name()->setText(text("first"));
        QVERIFY(m_row->renameFile(std::nullopt));
        const QString shown = status();
        name()->setText(text("  First  "));
        QVERIFY(!m_row->renameFile(std::nullopt));
        QCOMPARE(name()->text(), text("first.png"));
        QCOMPARE(status(), shown);
        QVERIFY(m_actions.isEmpty());
    }

    void anEmptyNameIsTheFilesOwn()
    {
        name()->setText(text("first"));
        QVERIFY(m_row->renameFile(std::nullopt));
        name()->clear();
        QVERIFY(!m_row->renameFile(std::nullopt));
        QCOMPARE(name()->text(), text("first.png"));
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("first.png")});
    }

    void aFailedRenameKeepsThePlaceAndTheUndo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        name()->setFocus();
        name()->selectAll();
        QTest::keyClicks(name(), text("foo"));
        QTest::keyClick(name(), Qt::Key_Return);
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
        QVERIFY(m_row->renameFile(std::nullopt));
        bool older = false;
        QTimer::singleShot(2500, this, [&older] { older = true; });
        QTRY_VERIFY(older);
        QCOMPARE(status(), text("Saved as foo.png"));
    }
};

QTEST_MAIN(RowNameTest)
#include "RowNameTest.moc"
