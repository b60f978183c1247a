// SPDX-License-Identifier: MIT
#include "platform/PanelWindow.h"

#include "tests/world/TestProgram.h"
#include "tests/world/WindowManager.h"
#include "tests/world/XDesktop.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace
{

constexpr double cornerRadius = 14;
constexpr int patience = 20000;

QString text(const char *literal)
{
    return QString::fromLatin1(literal);
}

/// A window made the way the tray makes its own.
class Panel : public QWidget
{
public:
    explicit Panel(PanelWindow &service)
        : QWidget(nullptr,
                  service.windowType() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
        , m_service(service)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setGeometry(700, 600, 300, 100);
        create();
    }

    void present()
    {
        destroy();
        create();
        m_service.prepare(*windowHandle(), cornerRadius);
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    QString property(const char *name) const { return XDesktop::property(winId(), text(name)); }

private:
    PanelWindow &m_service;
};

} // namespace

class PanelWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), text("xcb"));
        m_service = makePanelWindow();
    }

    void itIsAPanelEachTimeItIsShown()
    {
        Panel panel(*m_service);
        for (int time = 0; time < 3; ++time) {
            panel.present();
            QTRY_COMPARE(panel.property("_NET_WM_DESKTOP"), text("4294967295"));
            const QString state = panel.property("_NET_WM_STATE");
            QVERIFY2(state.contains(text("_NET_WM_STATE_SKIP_TASKBAR")), qPrintable(state));
            QVERIFY2(state.contains(text("_NET_WM_STATE_SKIP_PAGER")), qPrintable(state));
            QVERIFY2(state.contains(text("_NET_WM_STATE_ABOVE")), qPrintable(state));
            const QString type = panel.property("_NET_WM_WINDOW_TYPE");
            QVERIFY2(type.startsWith(text("_NET_WM_WINDOW_TYPE_UTILITY")), qPrintable(type));
            panel.hide();
            QTRY_VERIFY(panel.property("_NET_WM_DESKTOP") != text("4294967295"));
        }
    }

    void theStatesAreThereBeforeTheWindowIsMapped()
    {
        Panel panel(*m_service);
        m_service->prepare(*panel.windowHandle(), cornerRadius);
        const QString state = panel.property("_NET_WM_STATE");
        for (const char *name : {"STICKY", "SKIP_TASKBAR", "SKIP_PAGER", "ABOVE"})
            QVERIFY2(state.contains(text("_NET_WM_STATE_") + text(name)), qPrintable(state));
        QCOMPARE(panel.property("_NET_WM_DESKTOP"), text("4294967295"));
    }

    void itTakesTheKeyboardItselfAndIsNobodysDialogue()
    {
        Panel panel(*m_service);
        panel.present();
        const QString hints = panel.property("WM_HINTS");
        QVERIFY2(hints.contains(text("Client accepts input or input focus: False")),
                 qPrintable(hints));
        QVERIFY(panel.property("WM_PROTOCOLS").contains(text("WM_TAKE_FOCUS")));
        QVERIFY(panel.property("WM_TRANSIENT_FOR").contains(text("not found")));
    }

    void itIsInAGroupOfItsOwn()
    {
        Panel panel(*m_service);
        QWidget other;
        other.show();
        panel.present();
        const QString hints = panel.property("WM_HINTS");
        QVERIFY2(hints.contains(text("group leader: 0x") + QString::number(panel.winId(), 16)),
                 qPrintable(hints));
    }

    void showingItLeavesTheKeyboardToTheOtherProgram()
    {
        QTemporaryDir folder;
        const Terminal terminal(folder.filePath(text("typed")));
        Panel panel(*m_service);
        panel.present();
        XDesktop::type(text("a"));
        QVERIFY(terminal.isActive());
        QVERIFY(!panel.isActiveWindow());
    }

    void itTakesTheKeyboardWhenItIsAskedTo()
    {
        QTemporaryDir folder;
        const Terminal terminal(folder.filePath(text("typed")));
        Panel panel(*m_service);
        panel.present();
        m_service->takeFocus(*panel.windowHandle());
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        QTRY_COMPARE(XDesktop::activeWindow(), panel.winId());
    }

    void itStaysOnTheOtherWorkspaces()
    {
        Panel panel(*m_service);
        panel.present();
        QWidget ordinary;
        ordinary.show();
        QVERIFY(QTest::qWaitForWindowExposed(&ordinary));

        const auto mapState = [](const QWidget &window) {
            return XDesktop::run(text("xwininfo"), {text("-id"), QString::number(window.winId())})
                .section(text("Map State:"), 1)
                .section(u'\n', 0, 0)
                .trimmed();
        };
        XDesktop::run(text("xdotool"), {text("set_desktop"), text("1")});
        QTRY_COMPARE(mapState(ordinary), text("IsUnMapped"));
        QCOMPARE(mapState(panel), text("IsViewable"));
        XDesktop::run(text("xdotool"), {text("set_desktop"), text("0")});
        QTRY_COMPARE(mapState(ordinary), text("IsViewable"));
    }

    void transparencyShowsWhereACompositorDrawsTheWindows()
    {
        QVERIFY(!m_service->showsTransparency());
        QSignalSpy changes(m_service.get(), &PanelWindow::transparencyChanged);
        auto compositor = std::make_unique<IdleCompositor>();
        QVERIFY(!QTest::qWaitFor([this] { return m_service->showsTransparency(); }, 1500));

        changes.clear();
        compositor->takeWindows();
        QTRY_VERIFY_WITH_TIMEOUT(!changes.isEmpty() && m_service->showsTransparency(), patience);

        changes.clear();
        compositor.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!changes.isEmpty() && !m_service->showsTransparency(), patience);
    }

private:
    std::unique_ptr<PanelWindow> m_service;
};

VELMORA_WIDGETS_TEST(PanelWindowTest)
#include "PanelWindowTest.moc"
