// SPDX-License-Identifier: MIT
#include "tests/tray/RowFixture.h"

#include "style/BezelButton.h"
#include "tests/world/TestProgram.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QApplication>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

using TrayOnScreen::thumbnail;

class RowActionsTest : public QObject, RowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void trashingPointsTheRowIntoTheTrash()
    {
        const auto result = trash();
        QVERIFY(result);
        QCOMPARE(result->originalURL, m_url);
        QVERIFY(!QFile::exists(m_url.toLocalFile()));
        QVERIFY(QFile::exists(result->trashedURL.toLocalFile()));
        QCOMPARE(m_row->fileURL(), result->trashedURL);
        QCOMPARE(thumbnail(m_row)->fileURL(), result->trashedURL);
        QCOMPARE(status(), u"Moved to Trash"_s);
        QVERIFY(!button("Undo")->isHidden());
    }

    void aTrashThatIsAskedForTwiceIsDoneOnce()
    {
        int trashed = 0;
        const auto count = [&trashed](const TrashResult &) { ++trashed; };
        m_row->moveToTrash(count);
        m_row->moveToTrash(count);
        m_rig->settle();
        QCOMPARE(trashed, 1);
        QCOMPARE(status(), u"Moved to Trash"_s);
    }

    void aTypedNameIsNotGivenToAFileInTheTrash()
    {
        type("mine");
        const auto result = trash();
        m_row->retire(ScreenshotRowView::TypedName::Commit);
        m_rig->settle();
        QCOMPARE(m_row->fileURL(), result->trashedURL);
        QVERIFY(QFile::exists(result->trashedURL.toLocalFile()));
        QVERIFY(sent<ScreenshotRowAction::Renamed>().isEmpty());
        // Nor is it tried.
        QCOMPARE(status(), u"Moved to Trash"_s);
    }

    void aFileThatIsGoneCantBeTrashedAndTheLogSaysSo()
    {
        QVERIFY(QFile::remove(m_url.toLocalFile()));
        const QString line = u"trash failed %1: "_s.arg(m_url.toLocalFile());
        QVERIFY(!trash());
        QCOMPARE(status(), u"Trash failed"_s);
        QCOMPARE(m_row->fileURL(), m_url);
        QVERIFY(button("Undo")->isHidden());
        const QStringList lines = logLinesWith(line);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(!lines[0].endsWith(u": "_s), qPrintable(lines[0]));
    }

    void theUndoButtonAsksForTheLastChange()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        QVERIFY(result);
        QTest::mouseClick(button("Undo"), Qt::LeftButton);
        const auto undos = sent<ScreenshotRowAction::Undo>();
        QCOMPARE(undos.size(), 1);
        QCOMPARE(undos[0].action, UndoableAction::rename(result->oldURL, result->newURL));
    }

    void theUndoButtonDoesNothingWithoutAChange()
    {
        button("Undo")->show();
        QTest::mouseClick(button("Undo"), Qt::LeftButton);
        QVERIFY(m_actions.isEmpty());
    }

    void anUndoneRenameRestoresTheRow()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        const auto restored = undo(UndoableAction::rename(result->oldURL, result->newURL));
        QCOMPARE(restored, std::optional(m_url));
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
        QCOMPARE(m_row->fileURL(), m_url);
        QCOMPARE(thumbnail(m_row)->fileURL(), m_url);
        QCOMPARE(name()->text(), u"Shot.png"_s);
        QCOMPARE(status(), u"Restored"_s);
        QVERIFY(button("Undo")->isHidden());
        QTest::mouseClick(button("Undo"), Qt::LeftButton);
        QVERIFY(m_actions.isEmpty());
    }

    void anUndoneTrashShowsTheFileAsItIsNow()
    {
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
        const auto result = trash();
        QVERIFY(result);
        QImage blue(640, 400, QImage::Format_RGB32);
        blue.fill(Qt::blue);
        QVERIFY(blue.save(result->trashedURL.toLocalFile(), "PNG"));

        QVERIFY(undo(UndoableAction::trash(result->originalURL, result->trashedURL)));
        QVERIFY(QFile::exists(m_url.toLocalFile()));
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::blue));
    }

    void aFileThatCantBeReadAfterAnUndoKeepsThePicture()
    {
        QTRY_VERIFY(thumbnail(m_row)->image().pixelColor(0, 0) == QColor(Qt::red));
        const auto result = trash();
        QVERIFY(result);
        QFile broken(result->trashedURL.toLocalFile());
        QVERIFY(broken.open(QFile::WriteOnly | QFile::Truncate));
        broken.write("no picture");
        broken.close();
        QVERIFY(undo(UndoableAction::trash(result->originalURL, result->trashedURL)));

        // The same request, made after the row's own, is answered after it.
        QFuture<QImage> answer = m_rig->images.thumbnail(m_url, {64, 50});
        QTRY_VERIFY_WITH_TIMEOUT(answer.isFinished(), 20000);
        QVERIFY(answer.result().isNull());
        QCoreApplication::processEvents();
        QCOMPARE(thumbnail(m_row)->image().pixelColor(0, 0), QColor(Qt::red));
    }

    void anUndoThatIsNotPossibleStaysPending()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        m_rig->screenshot(u"Shot.png"_s, Qt::green);
        QVERIFY(!undo(UndoableAction::rename(result->oldURL, result->newURL)));
        QCOMPARE(status(), u"Could not undo"_s);
        QCOMPARE(m_row->fileURL(), m_rig->place(u"foo.png"_s));
        QCOMPARE(m_rig->filesInFolder().size(), 2);
        QVERIFY(!button("Undo")->isHidden());

        QVERIFY(QFile::remove(m_url.toLocalFile()));
        QVERIFY(QFile::remove(result->newURL.toLocalFile()));
        QVERIFY(!undo(UndoableAction::rename(result->oldURL, result->newURL)));
        QCOMPARE(status(), u"Could not undo"_s);
    }

    void aPendingUndoSurvivesAFailedTrash()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        QVERIFY(QFile::remove(result->newURL.toLocalFile()));
        QVERIFY(!trash());
        QCOMPARE(status(), u"Trash failed"_s);
        expectPending(UndoableAction::rename(result->oldURL, result->newURL));
    }

    void aPendingUndoSurvivesAFailedRename()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        QVERIFY(QFile::remove(result->newURL.toLocalFile()));
        name()->setText(u"bar"_s);
        QVERIFY(!rename());
        QCOMPARE(status(), u"Rename failed"_s);
        expectPending(UndoableAction::rename(result->oldURL, result->newURL));
    }

    void anUndoThatIsAskedForTwiceIsDoneOnce()
    {
        name()->setText(u"foo"_s);
        const auto result = rename();
        const auto action = UndoableAction::rename(result->oldURL, result->newURL);
        int restored = 0;
        m_row->performUndo(action, [&restored](const QUrl &) { ++restored; });
        m_row->performUndo(action, [&restored](const QUrl &) { ++restored; });
        m_rig->settle();
        QCOMPARE(restored, 1);
        QCOMPARE(status(), u"Restored"_s);
    }

    void theButtonsSendTheirActions()
    {
        for (const char *tip : {"Copy", "Show in File Manager", "Move to Trash", "Dismiss"})
            QTest::mouseClick(button(tip), Qt::LeftButton);
        QCOMPARE(m_actions.size(), 4);
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Copy>(m_actions[0].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Reveal>(m_actions[1].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Trash>(m_actions[2].what));
        QVERIFY(std::holds_alternative<ScreenshotRowAction::Close>(m_actions[3].what));
    }

    void escapeAnywhereInTheRowClosesItAndOtherKeysDoNot()
    {
        name()->setFocus();
        QTest::keyClicks(name(), u"half a na"_s);
        QTest::keyClick(name(), Qt::Key_Left);
        QVERIFY(m_actions.isEmpty());
        QTest::keyClick(name(), Qt::Key_Escape);
        QCOMPARE(sent<ScreenshotRowAction::Close>().size(), 1);
        m_row->retire(ScreenshotRowView::TypedName::Commit);
        button("Copy")->setFocus();
        QTest::keyClick(button("Copy"), Qt::Key_Escape);
        QCOMPARE(sent<ScreenshotRowAction::Close>().size(), 2);
        QCOMPARE(m_actions.size(), 2);
        QCOMPARE(m_rig->filesInFolder(), QStringList{u"Shot.png"_s});
    }

    void tabVisitsTheNameAndThenTheButtons()
    {
        name()->setText(u"foo"_s);
        QVERIFY(rename());
        name()->setFocus();
        for (const char *next :
             {"Undo", "Copy", "Show in File Manager", "Move to Trash", "Dismiss"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->accessibleName(), QString::fromUtf8(next));
        }
    }

private:
    void expectPending(const UndoableAction &action)
    {
        QVERIFY(!button("Undo")->isHidden());
        QTest::mouseClick(button("Undo"), Qt::LeftButton);
        const auto undos = sent<ScreenshotRowAction::Undo>();
        QCOMPARE(undos.size(), 1);
        QCOMPARE(undos[0].action, action);
    }
};

VELMORA_WIDGETS_TEST(RowActionsTest)
#include "RowActionsTest.moc"
