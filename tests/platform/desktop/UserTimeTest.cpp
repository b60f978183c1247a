// SPDX-License-Identifier: MIT
#include "platform/linux/x11/UserTime.h"

#include "platform/linux/x11/X11Connection.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

/// The X server as a window manager sees it.
class WindowManagerView : public QObject
{
public:
    WindowManagerView()
        : m_x11(XCB_EVENT_MASK_STRUCTURE_NOTIFY)
        , m_activeWindow(m_x11.atoms({"_NET_ACTIVE_WINDOW"}).first())
        , m_own(xcb_generate_id(m_x11.get()))
    {
        const uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_x11.get(), XCB_COPY_FROM_PARENT, m_own, m_x11.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &wanted);
        connect(&m_x11, &X11Connection::eventArrived, this, &WindowManagerView::read);
    }

    /// The server's current time.
    quint32 time()
    {
        m_time = 0;
        xcb_change_property(m_x11.get(), XCB_PROP_MODE_APPEND, m_own, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(m_x11.get());
        [this] { QTRY_VERIFY(m_time != 0); }();
        return m_time;
    }

    /// The time of the user's last activity, as the program states it when it asks for the focus.
    quint32 timeOfNextRequest(QWindow &window)
    {
        m_requestTime = 0;
        window.requestActivate();
        [this] { QTRY_VERIFY(m_requestTime != 0); }();
        return m_requestTime;
    }

private:
    void read(const xcb_generic_event_t *event)
    {
        const int type = event->response_type & 0x7f;
        if (type == XCB_PROPERTY_NOTIFY) {
            const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
            if (change->window == m_own)
                m_time = change->time;
        } else if (type == XCB_CLIENT_MESSAGE) {
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event);
            if (message->type == m_activeWindow)
                m_requestTime = message->data.data32[1];
        }
    }

    X11Connection m_x11;
    quint32 m_activeWindow;
    xcb_window_t m_own;
    quint32 m_time = 0;
    quint32 m_requestTime = 0;
};

} // namespace

class UserTimeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWindowAsksForTheFocusWithTheTimeOfTheRenewal()
    {
        QWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const Terminal terminal(m_place.filePath(u"typed"_s));
        terminal.activate();
        QTRY_VERIFY(!window.isActive());

        WindowManagerView view;
        // Wait until the effects of the change of focus are over.
        const quint32 then = view.time();
        quint32 now = then;
        QTRY_VERIFY((now = view.time()) > then + 100);
        UserTime userTime;
        bool wentOn = false;
        userTime.renew([&wentOn](quint32) { wentOn = true; });
        QVERIFY(!wentOn);
        QTRY_VERIFY(wentOn);
        QVERIFY(view.timeOfNextRequest(window) >= now);
    }

    void eachRenewalGoesOnOnce()
    {
        UserTime userTime;
        int count = 0;
        userTime.renew([&count](quint32) { ++count; });
        userTime.renew([&count](quint32) { ++count; });
        QTRY_COMPARE(count, 2);
        bool last = false;
        userTime.renew([&last](quint32 time) { last = time > 0; });
        QTRY_VERIFY(last);
        QCOMPARE(count, 2);
    }

    void nothingGoesOnAfterItsEnd()
    {
        bool wentOn = false;
        std::make_unique<UserTime>()->renew([&wentOn](quint32) { wentOn = true; });
        UserTime other;
        bool otherWentOn = false;
        other.renew([&otherWentOn](quint32) { otherWentOn = true; });
        QTRY_VERIFY(otherWentOn);
        QVERIFY(!wentOn);
    }

private:
    QTemporaryDir m_place;
};

VELMORA_WIDGETS_TEST(UserTimeTest)
#include "UserTimeTest.moc"
