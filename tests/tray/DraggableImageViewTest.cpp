// SPDX-License-Identifier: MIT
#include "tray/DraggableImageView.h"

#include "platform/Pasteboard.h"
#include "tests/tray/DropTargetProgram.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QJsonArray>
#include <QMouseEvent>
#include <QTest>

#include <cstdlib>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20000;

/// Another X client that reads the data of the drag in progress.
class EarlyReader
{
public:
    EarlyReader()
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    ~EarlyReader() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(EarlyReader)

    /// Nothing when the request is refused.
    std::optional<QByteArray> read(const QByteArray &format)
    {
        const xcb_atom_t target = atom(format);
        xcb_convert_selection(m_connection, m_window, atom("XdndSelection"), target, target,
                              XCB_CURRENT_TIME);
        xcb_flush(m_connection);
        std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(nullptr, &std::free);
        const auto isAnswered = [this, &event] {
            event.reset(xcb_poll_for_event(m_connection));
            return event && (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY;
        };
        if (!QTest::qWaitFor(isAnswered, patience) ||
            reinterpret_cast<xcb_selection_notify_event_t *>(event.get())->property ==
                XCB_ATOM_NONE)
            return std::nullopt;
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> property(
            xcb_get_property_reply(
                m_connection,
                xcb_get_property(m_connection, false, m_window, target, XCB_ATOM_ANY, 0, 1000),
                nullptr),
            &std::free);
        return QByteArray(static_cast<const char *>(xcb_get_property_value(property.get())),
                          xcb_get_property_value_length(property.get()));
    }

private:
    xcb_atom_t atom(const QByteArray &name) const
    {
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(
                m_connection,
                xcb_intern_atom(m_connection, false, uint16_t(name.size()), name.constData()),
                nullptr),
            &std::free);
        return reply->atom;
    }

    xcb_connection_t *const m_connection = xcb_connect(nullptr, nullptr);
    xcb_window_t m_window = 0;
};

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

    /// As mutter does for Wayland programs: before the drop, and without the time of a position.
    void aProgramMayAskForTheFileBeforeTheDrop()
    {
        std::optional<QByteArray> formats;
        std::optional<QByteArray> answer;
        m_program->onOver = [&formats, &answer] {
            EarlyReader reader;
            formats = reader.read("TARGETS");
            answer = reader.read("text/uri-list");
            DropTargetProgram::letGo();
        };
        dragToTheProgram();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->output(u"dropped"_s), patience);
        QVERIFY(formats && formats->size() >= qsizetype(sizeof(xcb_atom_t)) * 4);
        QCOMPARE(answer, m_url.toEncoded() + "\r\n");
        QCOMPARE(m_program->whatWasDropped()[u"urls"_s].toArray(), QJsonArray{m_url.toString()});
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
