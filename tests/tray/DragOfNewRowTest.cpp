// SPDX-License-Identifier: MIT
#include "tests/tray/DropTargetProgram.h"
#include "tests/tray/RowFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XDesktop.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 20'000; // milliseconds

} // namespace

/// A picture is dragged to another program before its file has its name.
class DragOfNewRowTest : public QObject, RowFixture
{
    Q_OBJECT

    std::unique_ptr<DropTargetProgram> m_program;

    void dragToTheProgram() { DropTargetProgram::dragFrom(*TrayOnScreen::thumbnail(m_row)); }

    /// The name is suggested just before the drop.
    void dropWhileTheNameComes()
    {
        m_program->onOver = [this] {
            m_row->updateSuggestedFilename(u"harvest.png"_s, true);
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
    }

private Q_SLOTS:
    void init()
    {
        begin();
        m_rig->settle();
        m_program = std::make_unique<DropTargetProgram>();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"ready"_s), patience);
    }

    void cleanup()
    {
        XDesktop::run(u"xdotool"_s, DropTargetProgram::release());
        m_program.reset();
        end();
    }

    void theFileIsRenamedWhenItHasBeenRead()
    {
        const QString before = m_row->fileURL().toLocalFile();
        bool stays = false;
        m_program->onOver = [&] {
            m_row->updateSuggestedFilename(u"harvest.png"_s, true);
            stays = Waiting::staysTrue([&] { return QFile::exists(before); }, 500ms);
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QVERIFY(stays);
        QCOMPARE(name()->text(), u"harvest.png"_s);
        QCOMPARE(m_program->whatWasDropped()[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
        // Still there for a program that reads it a little later.
        QVERIFY(Waiting::staysTrue([&] { return QFile::exists(before); }, 1000ms));
        QTRY_COMPARE_WITH_TIMEOUT(m_row->fileURL().fileName(), u"harvest.png"_s, patience);
        QVERIFY(!QFile::exists(before));
    }

    void aDragThatIsGivenUpDelaysNothingLonger()
    {
        m_program->onOver = [&] {
            m_row->updateSuggestedFilename(u"harvest.png"_s, true);
            XDesktop::run(u"xdotool"_s, {u"key"_s, u"Escape"_s});
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_row->fileURL().fileName() == u"harvest.png"_s, 4000);
        QVERIFY(!m_program->output(u"dropped"_s));
    }

    void aRowThatIsClosedRightAfterTheDropDoesNotTakeTheNameAlong()
    {
        dropWhileTheNameComes();
        m_row->retire(ScreenshotRowView::TypedName::Commit);
        delete m_row;
        const auto isNamed = [this] { return m_rig->filesInFolder().contains(u"harvest.png"_s); };
        QVERIFY(QTest::qWaitFor(isNamed, 4000));
    }

    void inTheTrashTheFileKeepsItsName()
    {
        dropWhileTheNameComes();
        QUrl trashed;
        m_row->moveToTrash([&](const TrashResult &result) { trashed = result.trashedURL; });
        QTRY_VERIFY_WITH_TIMEOUT(trashed.isValid(), patience);
        QVERIFY(Waiting::staysTrue([&] { return QFile::exists(trashed.toLocalFile()); }, 6000ms));
        QVERIFY(!m_rig->filesInFolder().contains(u"harvest.png"_s));
        QCOMPARE(status(), u"Moved to Trash"_s);
    }

    void aNameTypedMeanwhileStays()
    {
        dropWhileTheNameComes();
        type("mine");
        QTest::keyClick(name(), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(m_row->fileURL().fileName(), u"mine.png"_s, patience);
        QVERIFY(Waiting::staysTrue([&] { return m_row->fileURL().fileName() == u"mine.png"_s; },
                                   6000ms));
    }
};

VELMORA_WIDGETS_TEST(DragOfNewRowTest)
#include "DragOfNewRowTest.moc"
