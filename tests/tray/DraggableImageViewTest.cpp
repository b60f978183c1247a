// SPDX-License-Identifier: MIT
#include "tray/DraggableImageView.h"

#include "platform/Pasteboard.h"
#include "tests/tray/DropTargetProgram.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QJsonArray>
#include <QMouseEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20000;

} // namespace

class DraggableImageViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->setWindowFlag(Qt::FramelessWindowHint);
        m_view = new DraggableImageView(
            m_url, [this](const QUrl &file) { return m_pasteboard->drag(file); }, m_window.get());
        m_view->setGeometry(20, 20, 64, 50);
        m_window->setGeometry(100, 100, 200, 120);
        QImage image(640, 400, QImage::Format_RGB32);
        image.fill(Qt::red);
        m_view->setImage(image);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), patience));
        m_program = std::make_unique<DropTargetProgram>();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"ready"_s), patience);
    }

    void cleanup()
    {
        XDesktop::run(u"xdotool"_s, DropTargetProgram::release());
        m_program.reset();
        m_window.reset();
    }

    void anotherProgramGetsTheFileAsACopy()
    {
        m_program->onOver = [] { DropTargetProgram::letGo(); };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);

        QCOMPARE(m_program->output(u"over"_s)->toInt(), int(Qt::CopyAction));
        const QJsonObject got = m_program->whatWasDropped();
        QCOMPARE(got[u"action"_s].toInt(), int(Qt::CopyAction));
        QCOMPARE(got[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
        const QJsonObject formats = got[u"formats"_s].toObject();
        QCOMPARE(formats[u"text/uri-list"_s].toString().trimmed(),
                 QString::fromLatin1(m_url.toEncoded()));
        QCOMPARE(formats[u"text/plain"_s].toString(), m_url.toLocalFile());
        QCOMPARE(formats[u"application/x-kde-suggestedfilename"_s].toString(),
                 u"a shot é 50%.png"_s);
        QVERIFY(formats.keys().filter(u"vnd.portal"_s).isEmpty());
    }

    void aFileThatIsRenamedDuringTheDragArrivesUnderItsNewName()
    {
        const QUrl renamed = QUrl::fromLocalFile(u"/tmp/renamed.png"_s);
        m_program->onOver = [this, renamed] {
            m_view->setFileURL(renamed);
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QCOMPARE(m_program->whatWasDropped()[u"urls"_s].toArray(), QJsonArray{renamed.toString()});
    }

    void aFileThatIsRenamedAfterItsRowIsGoneArrivesUnderItsNewName()
    {
        const QUrl renamed = QUrl::fromLocalFile(u"/tmp/renamed.png"_s);
        m_program->onOver = [this, renamed] {
            delete m_view;
            m_pasteboard->fileMoved(m_url, renamed);
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QCOMPARE(m_program->whatWasDropped()[u"urls"_s].toArray(), QJsonArray{renamed.toString()});
    }

    void aRowThatGoesDuringTheDragLeavesTheDragAlive()
    {
        m_program->onOver = [this] {
            m_view->deleteLater();
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QCOMPARE(m_program->whatWasDropped()[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
    }

    void withoutAnImageThereIsNoDrag()
    {
        m_view->setImage({});
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(40, 30));
        XDesktop::movePointer(DropTargetProgram::place.center());
        closeFile();
        expectNoDrag();
    }

    void aSmallMovementIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        XDesktop::movePointer(start + QPoint(QApplication::startDragDistance() - 1, 0));
        closeFile();
        XDesktop::movePointer(DropTargetProgram::place.center());
        expectNoDrag();
    }

    void aRowThatMovesUnderThePointerIsNoDrag()
    {
        const QPoint start = m_view->mapToGlobal(QPoint(30, 25));
        pressAt(start);
        m_view->move(m_view->pos() + QPoint(0, 30));
        XDesktop::movePointer(start + QPoint(2, 0));
        closeFile();
        XDesktop::movePointer(DropTargetProgram::place.center());
        expectNoDrag();
    }

private:
    void dragToTheProgram() { DropTargetProgram::dragFrom(m_view->mapToGlobal(QPoint(30, 25))); }

    static void pressAt(QPoint place)
    {
        XDesktop::run(u"xdotool"_s, DropTargetProgram::moveTo(place) + DropTargetProgram::press());
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
    }

    static void closeFile()
    {
        XDesktop::run(u"xdotool"_s, DropTargetProgram::release());
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::NoButton);
    }

    /// The pointer is over the other program, and no drag came with it.
    void expectNoDrag()
    {
        QVERIFY(DropTargetProgram::place.contains(QCursor::pos()));
        QVERIFY(!m_program->output(u"over"_s));
        QVERIFY(!m_program->output(u"dropped"_s));
    }

    const QUrl m_url = QUrl::fromLocalFile(u"/tmp/a shot é 50%.png"_s);
    const std::unique_ptr<Pasteboard> m_pasteboard = makePasteboard();
    std::unique_ptr<QWidget> m_window;
    DraggableImageView *m_view = nullptr;
    std::unique_ptr<DropTargetProgram> m_program;
};

VELMORA_WIDGETS_TEST(DraggableImageViewTest)
#include "DraggableImageViewTest.moc"
