// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XDesktop.h"

#include "core/VelmoraSettings.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QTest>

#include <cstdlib>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

namespace
{

/// A desktop's bar, at an edge that it keeps for itself.
class Bar : public QWidget
{
public:
    /// @param reserved the property that tells the window manager
    Bar(const QRect &place, const QString &reserved) : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        winId();
        setAttribute(Qt::WA_X11NetWmWindowTypeDock);
        set(place, reserved);
        show();
        [[maybe_unused]] const bool isShown = QTest::qWaitForWindowExposed(this);
    }

    void set(const QRect &place, const QString &reserved)
    {
        setGeometry(place);
        const QString property = u"_NET_WM_STRUT_PARTIAL"_s;
        XDesktop::run(u"xprop"_s, {u"-id"_s, QString::number(winId()), u"-f"_s, property, u"32c"_s,
                                   u"-set"_s, property, reserved});
    }
};

/// The work area of each screen, as GNOME's window manager reports them.
class ReportedAreas
{
public:
    enum class Reporter { Running, Gone };

    /// Whether this window manager reports them too.
    static bool areOfThisManager()
    {
        return XDesktop::run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTED"_s})
            .contains(u"_GTK_WORKAREAS"_s);
    }

    ReportedAreas(const QList<quint32> &areas, Reporter reporter)
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
        , m_areas(atom("_GTK_WORKAREAS_D0"))
        , m_supported(atom("_NET_SUPPORTED"))
    {
        m_reply = xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, m_root, m_supported, XCB_ATOM_ATOM, 0, 1024),
            nullptr);
        set(m_areas, XCB_ATOM_CARDINAL, areas);
        QList<quint32> supported = formerlySupported();
        if (reporter == Reporter::Running)
            supported.append(atom("_GTK_WORKAREAS"));
        set(m_supported, XCB_ATOM_ATOM, supported);
    }

    ~ReportedAreas()
    {
        xcb_delete_property(m_connection, m_root, m_areas);
        set(m_supported, XCB_ATOM_ATOM, formerlySupported());
        std::free(m_reply);
        xcb_disconnect(m_connection);
    }
    Q_DISABLE_COPY_MOVE(ReportedAreas)

private:
    xcb_atom_t atom(const QByteArray &name) const
    {
        auto *reply = xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData()),
            nullptr);
        const xcb_atom_t result = reply->atom;
        std::free(reply);
        return result;
    }

    QList<quint32> formerlySupported() const
    {
        const auto *atoms = static_cast<const quint32 *>(xcb_get_property_value(m_reply));
        return {atoms, atoms + m_reply->value_len};
    }

    void set(xcb_atom_t property, xcb_atom_t type, const QList<quint32> &values)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_root, property, type, 32,
                            uint32_t(values.size()), values.constData());
        // A server may drop unread requests when the connection ends.
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    xcb_atom_t m_areas;
    xcb_atom_t m_supported;
    xcb_get_property_reply_t *m_reply;
};

} // namespace

/// The tray on a desktop with two screens side by side, each 800 by 1000.
class TrayScreensTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_screens.divide());
        XDesktop::movePointer(onTheLeft);
        begin();
    }

    void cleanup()
    {
        end();
        QVERIFY(m_screens.joinMonitors());
    }

    void itStandsOnTheScreenThatHasThePointer()
    {
        add("one.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 88 - 44, 620, 88));
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(1600 - 620 - 44, 1000 - 166 - 44, 620, 166));
        XDesktop::movePointer(onTheLeft);
        add("three.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 244 - 44, 620, 244));
    }

    void itKeepsClearOfTheBarsOfItsScreen()
    {
        const Bar below({0, 940, 800, 60}, u"0,0,0,60,0,0,0,0,0,0,0,799"_s);
        const Bar atTheSide({1520, 0, 80, 1000}, u"0,80,0,0,0,0,0,999,0,0,0,0"_s);
        // Its icons grow under the mouse, so that its window is larger than what it reserves.
        const Bar above({800, 0, 720, 90}, u"0,0,30,0,0,0,0,0,800,1519,0,0"_s);
        add("one.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 940 - 88 - 44, 620, 88));
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(1520 - 620 - 44, 1000 - 166 - 44, 620, 166));
        VelmoraSettings::setTrayPosition(TrayPosition::topRight);
        m_tray->layoutPanel();
        QTRY_COMPARE(panel()->geometry(), QRect(1520 - 620 - 44, 30 + 44, 620, 166));
    }

    void itMovesClearOfABarThatComesGrowsMovesAndGoes()
    {
        // As long as it is there, the desktop's work area ends above it, whatever other bars do.
        const Bar largest({800, 880, 800, 120}, u"0,0,0,120,0,0,0,0,0,0,800,1599"_s);
        add("one.png");
        const QPoint corner(800 - 620 - 44, 1000 - 88 - 44);
        QVERIFY(comesToRestAt(corner));
        {
            Bar bar({0, 940, 800, 60}, u"0,0,0,60,0,0,0,0,0,0,0,799"_s);
            QVERIFY(comesToRestAt(corner - QPoint(0, 60)));
            bar.set({0, 920, 800, 80}, u"0,0,0,80,0,0,0,0,0,0,0,799"_s);
            QVERIFY(comesToRestAt(corner - QPoint(0, 80)));
            bar.set({740, 0, 60, 1000}, u"0,860,0,0,0,0,0,999,0,0,0,0"_s);
            QVERIFY(comesToRestAt(corner - QPoint(60, 0)));
        }
        QVERIFY(comesToRestAt(corner));
    }

    /// To some window managers such a bar reserves the other screen, and they push windows off it.
    void aBarBetweenTheScreensPushesItOffNeither_data()
    {
        QTest::addColumn<QRect>("place");
        QTest::addColumn<QString>("reserved");
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<QPoint>("corner");
        QTest::newRow("on the right one")
            << QRect(800, 0, 60, 1000) << u"860,0,0,0,0,999,0,0,0,0,0,0"_s << onTheLeft
            << QPoint(800 - 620 - 44, 1000 - 88 - 44);
        QTest::newRow("on the left one")
            << QRect(740, 0, 60, 1000) << u"0,860,0,0,0,0,0,999,0,0,0,0"_s << onTheRight
            << QPoint(1600 - 620 - 44, 1000 - 88 - 44);
    }

    void aBarBetweenTheScreensPushesItOffNeither()
    {
        QFETCH(QRect, place);
        QFETCH(QString, reserved);
        QFETCH(QPoint, pointer);
        QFETCH(QPoint, corner);
        XDesktop::movePointer(pointer);
        add("one.png");
        QVERIFY(comesToRestAt(corner));
        const Bar bar(place, reserved);
        // The window manager may have moved it for a moment.
        const auto position = [] { return XDesktop::placeOf(panel()->winId()); };
        QVERIFY(Waiting::settles(position, 500ms));
        QVERIFY(comesToRestAt(corner));
        add("two.png");
        QVERIFY(comesToRestAt(corner - QPoint(0, 78)));
    }

    void itKeepsToTheWorkAreaThatGnomeReportsForItsScreen()
    {
        add("one.png");
        const QPoint corner(800 - 620 - 44, 1000 - 88 - 44);
        QVERIFY(comesToRestAt(corner));
        {
            const ReportedAreas areas({800, 32, 800, 968, 0, 0, 800, 930},
                                      ReportedAreas::Reporter::Running);
            QVERIFY(comesToRestAt(corner - QPoint(0, 70)));
        }
        QVERIFY(comesToRestAt(corner));
    }

    void aWorkAreaThatCanNotBeTrueIsIgnored_data()
    {
        QTest::addColumn<QList<quint32>>("areas");
        QTest::addColumn<bool>("isReporterGone");
        QTest::newRow("too short") << QList<quint32>{0, 0, 800} << false;
        QTest::newRow("of no size") << QList<quint32>{0, 0, 0, 0, 800, 0, 0, 0} << false;
        QTest::newRow("of almost no size") << QList<quint32>{300, 300, 20, 20} << false;
        QTest::newRow("elsewhere") << QList<quint32>{5000, 5000, 800, 930} << false;
        QTest::newRow("beyond all numbers") << QList<quint32>(512, 0x7FFFFFFF) << false;
        QTest::newRow("of both screens") << QList<quint32>{0, 0, 1600, 930} << false;
        QTest::newRow("left by a former manager") << QList<quint32>{0, 0, 800, 930} << true;
    }

    void aWorkAreaThatCanNotBeTrueIsIgnored()
    {
        QFETCH(QList<quint32>, areas);
        QFETCH(bool, isReporterGone);
        if (isReporterGone && ReportedAreas::areOfThisManager())
            QSKIP("this window manager reports them itself");
        const Bar bar({0, 940, 800, 60}, u"0,0,0,60,0,0,0,0,0,0,0,799"_s);
        const ReportedAreas reported(areas, isReporterGone ? ReportedAreas::Reporter::Gone
                                                           : ReportedAreas::Reporter::Running);
        add("one.png");
        QVERIFY(comesToRestAt({800 - 620 - 44, 940 - 88 - 44}));
    }

    void withoutANewScreenshotItStaysOnItsScreen()
    {
        add("one.png");
        add("two.png");
        XDesktop::movePointer(onTheRight);
        click(rows().first(), "Dismiss");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 88 - 44, 620, 88));
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        m_tray->layoutPanel();
        QTRY_COMPARE(panel()->geometry(), QRect(44, 44, 620, 88));
    }

    void whileANameIsTypedItStaysWhereItIs()
    {
        add("one.png");
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
        type(rows().first(), "half");
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 166 - 44, 620, 166));
        QVERIFY(name(rows().last())->hasFocus());
    }

    void whenItsScreenGoesItMovesToAnother()
    {
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        XDesktop::movePointer(onTheRight);
        add("one.png");
        QTRY_COMPARE(panel()->pos(), QPoint(800 + 44, 44));
        QVERIFY(m_screens.joinMonitors());
        QTRY_COMPARE(panel()->pos(), QPoint(44, 44));
    }

private:
    static constexpr QPoint onTheLeft = {300, 300};
    static constexpr QPoint onTheRight = {1300, 300};

    Screens m_screens;
};

VELMORA_WIDGETS_TEST(TrayScreensTest)
#include "TrayScreensTest.moc"
