// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"

#include "core/VelmoraSettings.h"
#include "style/BezelButton.h"
#include "tests/world/TestProgram.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QClipboard>
#include <QMimeData>
#include <QTest>

using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::rows;
using TrayOnScreen::status;

namespace
{

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

} // namespace

class TrayActionsTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void namingIsShownOnTheRow()
    {
        const QUuid id = add("one.png");
        m_tray->markNaming(id);
        QCOMPARE(status(rows().first()), text("Reading screen text..."));
        m_tray->markNaming(QUuid::createUuid());
        m_tray->updateSuggestion(QUuid::createUuid(), text("x.png"), true);
        QVERIFY(m_told.isEmpty());
    }

    void anAutomaticRenameIsTold()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        QCOMPARE(m_told, (QStringList{text("renamed better.png"),
                                      text("rename undoable one.png better.png")}));
        QCOMPARE(status(rows().first()), text("Renamed automatically"));
    }

    void aTypedNameIsToldOnce()
    {
        add("one.png");
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_told, (QStringList{text("renamed typed.png"),
                                      text("rename undoable one.png typed.png")}));
    }

    void aRenameThatFailsIsNotTold()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(rows().first()), text("Rename failed"));
        QVERIFY(m_told.isEmpty());
    }

    void copyPutsPictureAndFileOnTheClipboardWhateverTheSetting()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::none);
        add("one.png");
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), text("Copied"));
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        QVERIFY(data->formats().contains(text("image/png")));
        QCOMPARE(data->urls(), QList<QUrl>{m_rig->place(text("one.png"))});
    }

    void aCopyThatFailsSaysSo()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), text("Could not copy"));
    }

    void revealShowsTheFileWhereItIsNow()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        click(rows().first(), "Show in File Manager");
        QCOMPARE(m_rig->fileBrowser->revealed, QList<QUrl>{m_rig->place(text("better.png"))});
    }

    void trashTellsAndClosesTheRow()
    {
        add("one.png");
        add("two.png");
        click(rows().last(), "Move to Trash");
        QCOMPARE(m_told, QStringList{text("trash undoable one.png")});
        QCOMPARE(names(), QStringList{text("two.png")});
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("two.png")});
    }

    void aTrashThatFailsLeavesTheRow()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(text("one.png")).toLocalFile()));
        click(rows().first(), "Move to Trash");
        QCOMPARE(status(rows().first()), text("Trash failed"));
        QVERIFY(m_told.isEmpty());
        QCOMPARE(rows().size(), 1);
    }

    void undoTellsAndKeepsTheRow()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        m_told.clear();
        click(rows().first(), "Undo");
        QCOMPARE(m_told, QStringList{text("undo performed one.png")});
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("one.png")});
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(text("one.png"))));
    }

    void undoWhileTheFileIsBeingRenamedTakesThatNameBack()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        FilenameTextField *field = name(rows().first());
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text("best.png"));
        QTest::keyClick(field, Qt::Key_Return);
        click(rows().first(), "Undo");
        QTRY_COMPARE(m_rig->filesInFolder(), QStringList{text("better.png")});
        QCOMPARE(names(), QStringList{text("better.png")});
        QCOMPARE(status(rows().first()), text("Restored"));
    }

    void anUndoThatFailsIsNotTold()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        m_rig->screenshot(text("one.png"), Qt::blue);
        m_told.clear();
        click(rows().first(), "Undo");
        QCOMPARE(status(rows().first()), text("Could not undo"));
        QVERIFY(m_told.isEmpty());
        QVERIFY(button(rows().first(), text("Undo"))->isVisible());
    }

    void everyRowThatGoesIsToldOnce()
    {
        QList<QUuid> gone;
        m_tray->onRowGone = [&](const QUuid &id) { gone.append(id); };
        const QUuid first = add("one.png");
        const QUuid second = add("two.png");
        const QUuid third = add("three.png");
        QVERIFY(gone.isEmpty());
        add("four.png");
        QCOMPARE(gone, QList<QUuid>{first});
        click(rows().last(), "Move to Trash");
        QCOMPARE(gone, (QList<QUuid>{first, second}));
        click(rows().last(), "Dismiss");
        QCOMPARE(gone, (QList<QUuid>{first, second, third}));
    }

    void withoutCallbacksEverythingStillWorks()
    {
        m_tray->onRenamed = nullptr;
        m_tray->onRenameUndoable = nullptr;
        m_tray->onTrashUndoable = nullptr;
        m_tray->onUndoPerformed = nullptr;
        m_tray->onRowGone = nullptr;
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        click(rows().first(), "Undo");
        click(rows().first(), "Move to Trash");
        QVERIFY(m_rig->filesInFolder().isEmpty());
    }

    void escapeForgetsATypedName()
    {
        add("one.png");
        add("two.png");
        QWidget *row = rows().first();
        type(row, "half a na");
        QTest::keyClick(name(row), Qt::Key_Escape);
        m_rig->settle();
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(m_rig->filesInFolder(), (QStringList{text("one.png"), text("two.png")}));
        QVERIFY(m_told.isEmpty());
        // Further typing does not go to another row.
        QVERIFY(!name(rows().first())->hasFocus());
    }

    void aDismissedRowCommitsATypedName()
    {
        add("one.png");
        add("two.png");
        type(rows().first(), "Half a name");
        click(rows().first(), "Dismiss");
        QCOMPARE(names(), QStringList{text("one.png")});
        QCOMPARE(m_rig->filesInFolder(), (QStringList{text("half-a-name.png"), text("one.png")}));
        QCOMPARE(m_told, (QStringList{text("renamed half-a-name.png"),
                                      text("rename undoable two.png half-a-name.png")}));
        QVERIFY(!name(rows().first())->hasFocus());
    }

    void aRowThatIsPushedOutCommitsATypedName()
    {
        add("one.png");
        type(rows().first(), "Half a name");
        add("two.png");
        add("three.png");
        add("four.png");
        m_rig->settle();
        QCOMPARE(rows().size(), 3);
        QCOMPARE(m_told, (QStringList{text("renamed half-a-name.png"),
                                      text("rename undoable one.png half-a-name.png")}));
        QVERIFY(m_rig->filesInFolder().contains(text("half-a-name.png")));
        for (const QWidget *row : rows())
            QVERIFY(!name(row)->hasFocus());
    }

    void aNameThatWasNotTouchedIsNotCommittedByDismissing()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("later.png"), false);
        click(rows().first(), "Dismiss");
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("one.png")});
        QVERIFY(m_told.isEmpty());
    }

    void theEndOfTheProgramCommitsATypedName()
    {
        add("one.png");
        type(rows().first(), "Half a name");
        m_tray->commitTypedNames();
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("half-a-name.png")});
        QCOMPARE(m_told.size(), 2);
    }

    void aRenameIsToldAlsoWhenItsRowHasGoneMeanwhile()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, text("better.png"), true);
        click(rows().first(), "Dismiss");
        QTRY_COMPARE(m_told, (QStringList{text("renamed better.png"),
                                          text("rename undoable one.png better.png")}));
    }

    void anotherFileThatHasTakenItsPlaceIsLeftAlone()
    {
        add("one.png");
        QVERIFY(QFile::rename(m_rig->place(text("one.png")).toLocalFile(),
                              m_rig->place(text("own.png")).toLocalFile()));
        m_rig->screenshot(text("one.png"), Qt::blue);
        QWidget *row = rows().first();
        click(row, "Move to Trash");
        QCOMPARE(status(row), text("Trash failed"));
        click(row, "Copy");
        QCOMPARE(status(row), text("Could not copy"));
        type(row, "typed");
        QTest::keyClick(name(row), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(row), text("Rename failed"));
        QCOMPARE(m_rig->filesInFolder(), (QStringList{text("one.png"), text("own.png")}));
        QVERIFY(m_told.isEmpty());
    }

    void theTrashLeavesATypedNameAlone()
    {
        add("one.png");
        add("two.png");
        type(rows().first(), "half a na");
        click(rows().first(), "Move to Trash");
        QCoreApplication::processEvents();
        QCOMPARE(m_told, QStringList{text("trash undoable two.png")});
    }

    void endingWhileTheUserTypesRenamesNothing()
    {
        add("one.png");
        type(rows().first(), "half a na");
        m_tray.reset();
        QCOMPARE(m_rig->filesInFolder(), QStringList{text("one.png")});
        QVERIFY(m_told.isEmpty());
    }
};

VELMORA_WIDGETS_TEST(TrayActionsTest)
#include "TrayActionsTest.moc"
