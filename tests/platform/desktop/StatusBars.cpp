// SPDX-License-Identifier: MIT
#include "StatusBars.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTest>

#include <cstdlib>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 10'000;

const QRgb loud = qRgb(255, 0, 255);

QImage screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

/// The smallest rectangle around the matching pixels.
template <typename Fits>
QRect boundsOf(const QImage &image, const Fits &fits)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (fits(x, y))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// Higher than a tool tip, lower than any menu of several entries.
constexpr int lowestMenu = 60;

/// The area of the open menu, of any program: it is the only window without the window manager that
/// is this high.
QRect menuOnScreen()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    xcb_connection_t *const x11 = connection.get();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x11)).data->root;
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(x11, xcb_query_tree(x11, root), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const Owned<xcb_get_window_attributes_reply_t> state(
            xcb_get_window_attributes_reply(x11, xcb_get_window_attributes(x11, window), nullptr));
        const Owned<xcb_get_geometry_reply_t> place(
            xcb_get_geometry_reply(x11, xcb_get_geometry(x11, window), nullptr));
        if (state && place && state->map_state == XCB_MAP_STATE_VIEWABLE &&
            state->override_redirect && place->height >= lowestMenu)
            return {place->x, place->y, place->width, place->height};
    }
    return {};
}

void xdotool(const QStringList &arguments)
{
    QProcess::execute(u"xdotool"_s, arguments);
}

void movePointer(QPoint place)
{
    xdotool({u"mousemove"_s, QString::number(place.x()), QString::number(place.y())});
}

QPoint outOfTheWay()
{
    return QGuiApplication::primaryScreen()->geometry().center() + QPoint(0, 300);
}

} // namespace

StatusBars::Program::Program(const QString &program, const QStringList &arguments)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

StatusBars::Program::~Program()
{
    kill();
}

QString StatusBars::Program::nextLine()
{
    const QDeadlineTimer deadline(patience);
    while (!m_process.canReadLine() && !deadline.hasExpired())
        m_process.waitForReadyRead(int(deadline.remainingTime()));
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

bool StatusBars::Program::isRunning() const
{
    return m_process.state() == QProcess::Running;
}

void StatusBars::Program::kill()
{
    m_process.terminate();
    if (!m_process.waitForFinished(patience)) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
}

std::unique_ptr<StatusBars::Program> StatusBars::startPanel()
{
    const QString folder =
        qEnvironmentVariable("XDG_CONFIG_HOME") + u"/xfce4/xfconf/xfce-perchannel-xml"_s;
    QDir().mkpath(folder);
    QFile::copy(QStringLiteral(PANEL_SETTINGS), folder + u"/xfce4-panel.xml"_s);
    return std::make_unique<Program>(u"xfce4-panel"_s, QStringList{u"--disable-wm-check"_s});
}

std::unique_ptr<StatusBars::Program> StatusBars::startOlderTray()
{
    return std::make_unique<Program>(
        u"trayer"_s, u"--edge top --align left --widthtype request --height 32"_s.split(u' '));
}

std::optional<QPoint> StatusBars::itemOnScreen()
{
    const QImage image = screen();
    const QRect item = boundsOf(image, [&](int x, int y) { return image.pixel(x, y) == loud; });
    return item.width() > 8 ? std::optional(item.center()) : std::nullopt;
}

void StatusBars::click(QPoint place, int button)
{
    movePointer(place);
    xdotool({u"click"_s, QString::number(button)});
}

QRect StatusBars::openMenu(int button)
{
    const std::optional<QPoint> item = itemOnScreen();
    if (!item)
        return {};
    click(*item, button);
    [&] { QTRY_VERIFY(!menuOnScreen().isEmpty()); }();
    return menuOnScreen();
}

void StatusBars::clickMenu(const QRect &menu, double howFarDown)
{
    click({menu.center().x(), menu.top() + int(menu.height() * howFarDown)}, 1);
    movePointer(outOfTheWay());
    [&] { QTRY_VERIFY(menuOnScreen().isEmpty()); }();
}

bool StatusBars::isMenuOpen()
{
    return !menuOnScreen().isEmpty();
}
