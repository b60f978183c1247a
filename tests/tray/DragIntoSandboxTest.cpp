// SPDX-License-Identifier: MIT
#include "tests/tray/DropTargetProgram.h"
#include "tests/tray/RowFixture.h"
#include "tests/world/DocumentPortal.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/ScreenshotRowView.h"

#include <QDrag>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000; // milliseconds

} // namespace

/// A row's picture is dragged to a program in a sandbox: it gets the file through the desktop's
/// file-transfer portal, the real one.
class DragIntoSandboxTest : public QObject, RowFixture
{
    Q_OBJECT

    std::unique_ptr<DocumentPortal> m_portal;
    std::unique_ptr<DropTargetProgram> m_program;

    void dragToTheProgram() { DropTargetProgram::dragFrom(*TrayOnScreen::thumbnail(m_row)); }

    /// The key that the window has received; empty if it has received none.
    QByteArray key() const
    {
        const QJsonObject formats = m_program->whatWasDropped()[u"formats"_s].toObject();
        return formats[u"application/vnd.portal.filetransfer"_s].toString().toLatin1();
    }

    static bool hasKey(const QMimeData &data)
    {
        return !data.data(u"application/vnd.portal.filetransfer"_s).isEmpty();
    }

    /// Like a hand, which is slower than the portal.
    void letGo() const
    {
        const QMimeData &dragged = *m_window->findChild<QDrag *>()->mimeData();
        QTRY_VERIFY_WITH_TIMEOUT(hasKey(dragged), patience);
        DropTargetProgram::letGo();
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (const std::optional<QString> obstacle = DocumentPortal::obstacle())
            QSKIP(qPrintable(*obstacle));
    }

    void init()
    {
        m_portal = std::make_unique<DocumentPortal>();
        begin();
        m_rig->settle();
        // The program has to notice the portal.
        const auto notices = [this] { return hasKey(*m_rig->actions.drag(m_url)); };
        QTRY_VERIFY_WITH_TIMEOUT(notices(), patience);
        m_program = std::make_unique<DropTargetProgram>();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"ready"_s), patience);
    }

    void cleanup()
    {
        XDesktop::run(u"xdotool"_s, DropTargetProgram::release());
        m_program.reset();
        end();
        m_portal.reset();
    }

    void theDroppedFileIsRead()
    {
        m_program->onOver = [this] { letGo(); };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        const auto received = DocumentPortal::receive(key());
        QVERIFY(received);
        QCOMPARE(received->path.section(u'/', -1), m_url.fileName());
        QFile file(m_url.toLocalFile());
        QVERIFY(file.open(QFile::ReadOnly));
        QCOMPARE(received->content, file.readAll());
    }

    void theFileMayBeRenamedDuringTheDrag()
    {
        m_program->onOver = [this] {
            name()->setText(u"during-the-drag"_s);
            QVERIFY(rename());
            letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        const auto received = DocumentPortal::receive(key());
        QVERIFY(received);
        QCOMPARE(received->path.section(u'/', -1), u"during-the-drag.png"_s);
        QFile file(m_row->fileURL().toLocalFile());
        QVERIFY(file.open(QFile::ReadOnly));
        QCOMPARE(received->content, file.readAll());
    }

    void theTransferEndsSomeTimeAfterTheDrop()
    {
        m_program->onOver = [this] { letGo(); };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QVERIFY(DocumentPortal::knows(key()));
        QTRY_VERIFY_WITH_TIMEOUT(!DocumentPortal::knows(key()), patience);
    }
};

VELMORA_WIDGETS_TEST(DragIntoSandboxTest)
#include "DragIntoSandboxTest.moc"
