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

using namespace Qt::StringLiterals;

using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::rows;
using TrayOnScreen::status;

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
        QCOMPARE(status(rows().first()), u"Reading screen text..."_s);
        m_tray->markNaming(QUuid::createUuid());
        m_tray->updateSuggestion(QUuid::createUuid(), u"x.png"_s, true);
        QVERIFY(m_calls.isEmpty());
    }

    void anAutomaticRenameIsReported()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        QCOMPARE(m_calls,
                 (QStringList{u"renamed better.png"_s, u"rename undoable one.png better.png"_s}));
        QCOMPARE(status(rows().first()), u"Renamed automatically"_s);
    }

    void aTypedNameIsReportedOnce()
    {
        add("one.png");
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(m_calls,
                 (QStringList{u"renamed typed.png"_s, u"rename undoable one.png typed.png"_s}));
    }

    void aRenameThatFailsIsNotReported()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(u"one.png"_s).toLocalFile()));
        type(rows().first(), "typed");
        QTest::keyClick(name(rows().first()), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(rows().first()), u"Rename failed"_s);
        QVERIFY(m_calls.isEmpty());
    }

    void copyPutsPictureAndFileOnTheClipboardWhateverTheSetting()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::none);
        add("one.png");
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), u"Copied"_s);
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        QVERIFY(data->formats().contains(u"image/png"_s));
        QCOMPARE(data->urls(), QList<QUrl>{m_rig->place(u"one.png"_s)});
    }

    void aCopyThatFailsSaysSo()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(u"one.png"_s).toLocalFile()));
        click(rows().first(), "Copy");
        QCOMPARE(status(rows().first()), u"Could not copy"_s);
    }

    void revealShowsTheFileWhereItIsNow()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        click(rows().first(), "Show in File Manager");
        QCOMPARE(m_rig->fileBrowser->revealed, QList<QUrl>{m_rig->place(u"better.png"_s)});
    }

    void trashTellsAndClosesTheRow()
    {
        add("one.png");
        add("two.png");
        click(rows().last(), "Move to Trash");
        QCOMPARE(m_calls, QStringList{u"trash undoable one.png"_s});
        QCOMPARE(names(), QStringList{u"two.png"_s});
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"two.png"_s});
    }

    void aTrashThatFailsLeavesTheRow()
    {
        add("one.png");
        QVERIFY(QFile::remove(m_rig->place(u"one.png"_s).toLocalFile()));
        click(rows().first(), "Move to Trash");
        QCOMPARE(status(rows().first()), u"Trash failed"_s);
        QVERIFY(m_calls.isEmpty());
        QCOMPARE(rows().size(), 1);
    }

    void undoTellsAndKeepsTheRow()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        m_calls.clear();
        click(rows().first(), "Undo");
        QCOMPARE(m_calls, QStringList{u"undo performed one.png"_s});
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"one.png"_s});
        QCOMPARE(names(), QStringList{u"one.png"_s});
        QCOMPARE(m_tray->fileURL(id), std::optional(m_rig->place(u"one.png"_s)));
    }

    void undoWhileTheFileIsBeingRenamedTakesThatNameBack()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        FilenameTextField *field = name(rows().first());
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, u"best.png"_s);
        QTest::keyClick(field, Qt::Key_Return);
        click(rows().first(), "Undo");
        QTRY_COMPARE(m_rig->filesInFolder(), QStringList{u"better.png"_s});
        QCOMPARE(names(), QStringList{u"better.png"_s});
        QCOMPARE(status(rows().first()), u"Restored"_s);
    }

    void anUndoThatFailsIsNotReported()
    {
        const QUuid id = add("one.png");
        suggest(id, "better.png");
        m_rig->screenshot(u"one.png"_s, Qt::blue);
        m_calls.clear();
        click(rows().first(), "Undo");
        QCOMPARE(status(rows().first()), u"Could not undo"_s);
        QVERIFY(m_calls.isEmpty());
        QVERIFY(button(rows().first(), u"Undo"_s)->isVisible());
    }

    void everyRowThatGoesIsReportedOnce()
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
        QCOMPARE(names(), QStringList{u"one.png"_s});
        QCOMPARE(m_rig->filesInFolder(), (QStringList{u"one.png"_s, u"two.png"_s}));
        QVERIFY(m_calls.isEmpty());
        // Further typing does not go to another row.
        QVERIFY(!name(rows().first())->hasFocus());
    }

    void aDismissedRowCommitsATypedName()
    {
        add("one.png");
        add("two.png");
        type(rows().first(), "Half a name");
        click(rows().first(), "Dismiss");
        QCOMPARE(names(), QStringList{u"one.png"_s});
        QCOMPARE(m_rig->filesInFolder(), (QStringList{u"half-a-name.png"_s, u"one.png"_s}));
        QCOMPARE(m_calls, (QStringList{u"renamed half-a-name.png"_s,
                                       u"rename undoable two.png half-a-name.png"_s}));
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
        QCOMPARE(m_calls, (QStringList{u"renamed half-a-name.png"_s,
                                       u"rename undoable one.png half-a-name.png"_s}));
        QVERIFY(m_rig->filesInFolder().contains(u"half-a-name.png"_s));
        for (const QWidget *row : rows())
            QVERIFY(!name(row)->hasFocus());
    }

    void aNameThatWasNotTouchedIsNotCommittedByDismissing()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, u"later.png"_s, false);
        click(rows().first(), "Dismiss");
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"one.png"_s});
        QVERIFY(m_calls.isEmpty());
    }

    void theEndOfTheProgramCommitsATypedName()
    {
        add("one.png");
        type(rows().first(), "Half a name");
        m_tray->commitTypedNames();
        m_rig->settle();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"half-a-name.png"_s});
        QCOMPARE(m_calls.size(), 2);
    }

    void aRenameIsReportedAlsoWhenItsRowIsGone()
    {
        const QUuid id = add("one.png");
        m_tray->updateSuggestion(id, u"better.png"_s, true);
        click(rows().first(), "Dismiss");
        QTRY_COMPARE(m_calls, (QStringList{u"renamed better.png"_s,
                                           u"rename undoable one.png better.png"_s}));
    }

    void anotherFileThatHasTakenItsPlaceIsLeftAlone()
    {
        add("one.png");
        QVERIFY(QFile::rename(m_rig->place(u"one.png"_s).toLocalFile(),
                              m_rig->place(u"own.png"_s).toLocalFile()));
        m_rig->screenshot(u"one.png"_s, Qt::blue);
        QWidget *row = rows().first();
        click(row, "Move to Trash");
        QCOMPARE(status(row), u"Trash failed"_s);
        click(row, "Copy");
        QCOMPARE(status(row), u"Could not copy"_s);
        type(row, "typed");
        QTest::keyClick(name(row), Qt::Key_Return);
        m_rig->settle();
        QCOMPARE(status(row), u"Rename failed"_s);
        QCOMPARE(m_rig->filesInFolder(), (QStringList{u"one.png"_s, u"own.png"_s}));
        QVERIFY(m_calls.isEmpty());
    }

    void theTrashLeavesATypedNameAlone()
    {
        add("one.png");
        add("two.png");
        type(rows().first(), "half a na");
        click(rows().first(), "Move to Trash");
        QCoreApplication::processEvents();
        QCOMPARE(m_calls, QStringList{u"trash undoable two.png"_s});
    }

    void endingWhileTheUserTypesRenamesNothing()
    {
        add("one.png");
        type(rows().first(), "half a na");
        m_tray.reset();
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"one.png"_s});
        QVERIFY(m_calls.isEmpty());
    }
};

VELMORA_WIDGETS_TEST(TrayActionsTest)
#include "TrayActionsTest.moc"
