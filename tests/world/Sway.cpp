// SPDX-License-Identifier: MIT
#include "tests/world/Sway.h"

#include "tests/world/XDesktop.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <unistd.h>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(20);

/// "nobody" on every system.
constexpr uid_t ordinaryUser = 65534;

QJsonObject focusedIn(const QJsonObject &node)
{
    if (node.value(u"focused"_s).toBool())
        return node;
    QJsonArray inside = node.value(u"nodes"_s).toArray();
    const QJsonArray floating = node.value(u"floating_nodes"_s).toArray();
    for (const QJsonValue &window : floating)
        inside.append(window);
    for (const QJsonValue &inner : qAsConst(inside)) {
        if (const QJsonObject found = focusedIn(inner.toObject()); !found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

Sway::Sway(X11 x11, const QByteArray &settings, Screens screens)
{
    QFile file(m_folder.filePath(u"config"_s));
    if (!file.open(QFile::WriteOnly))
        qFatal("can't write sway's settings");
    file.write(x11 == X11::Yes ? "xwayland enable\n" : "xwayland disable\n");
    file.write(settings);
    file.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"WAYLAND_DISPLAY"_s, u"SWAYSOCK"_s})
        environment.remove(name);
    if (screens == Screens::Windows)
        XDesktop::run(u"xhost"_s, {u"+local:"_s});
    else
        environment.remove(u"DISPLAY"_s);
    environment.insert(u"HOME"_s, m_folder.path());
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
    environment.insert(u"WLR_BACKENDS"_s, screens == Screens::Windows ? u"x11"_s : u"headless"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    QStringList command = {u"sway"_s, u"--config"_s, file.fileName()};
    if (::geteuid() == 0) {
        for (const QString &path : {m_folder.path(), file.fileName()})
            if (::chown(QFile::encodeName(path).constData(), ordinaryUser, ordinaryUser) != 0)
                qFatal("can't give sway its folder");
        const QString user = QString::number(ordinaryUser);
        command =
            QStringList{u"setpriv"_s, u"--reuid"_s, user, u"--regid"_s, user, u"--clear-groups"_s} +
            command;
    }
    m_process.start(command.takeFirst(), command);
    const auto isThere = [this] { return QFile::exists(display()) && !ipcSocket().isEmpty(); };
    if (!QTest::qWaitFor(isThere, int(patience.count())))
        qWarning("sway does not start");
}

Sway::~Sway()
{
    m_process.terminate();
    if (!m_process.waitForFinished(int(patience.count())))
        m_process.kill();
}

bool Sway::isInstalled()
{
    return !QStandardPaths::findExecutable(u"sway"_s).isEmpty() &&
           !QStandardPaths::findExecutable(u"setpriv"_s).isEmpty();
}

QString Sway::display() const
{
    return m_folder.filePath(u"wayland-1"_s);
}

QString Sway::command(const QString &command) const
{
    return QString::fromUtf8(run(u"swaymsg"_s, {u"--socket"_s, ipcSocket(), command}));
}

void Sway::unplug(const QString &screen)
{
    const QString described =
        XDesktop::run(u"xwininfo"_s, {u"-int"_s, u"-name"_s, u"wlroots - "_s + screen});
    const QRegularExpression number(u"Window id: (\\d+)"_s);
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    const auto atom = [connection](const char *name) {
        const auto cookie = xcb_intern_atom(connection, 0, uint16_t(qstrlen(name)), name);
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
        return reply->atom;
    };
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = number.match(described).captured(1).toUInt();
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(connection, 0, event.window, 0, reinterpret_cast<const char *>(&event));
    // A server may drop unread requests when the connection ends.
    atom("WM_DELETE_WINDOW");
    xcb_disconnect(connection);
}

QJsonDocument Sway::ask(const QString &type) const
{
    return QJsonDocument::fromJson(
        run(u"swaymsg"_s, {u"--socket"_s, ipcSocket(), u"--type"_s, type, u"--raw"_s}));
}

QJsonObject Sway::tree() const
{
    return ask(u"get_tree"_s).object();
}

bool Sway::hasKeyboard() const
{
    const QJsonArray inputs = ask(u"get_inputs"_s).array();
    return std::any_of(inputs.begin(), inputs.end(), [](const QJsonValue &input) {
        return input.toObject().value(u"type"_s) == u"keyboard"_s;
    });
}

QString Sway::focusedApplication() const
{
    return focusedIn(tree()).value(u"app_id"_s).toString();
}

QByteArray Sway::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    start(process, program, arguments);
    const auto hasEnded = [&process] { return process.state() == QProcess::NotRunning; };
    if (!QTest::qWaitFor(hasEnded, int(patience.count())))
        qWarning() << program << arguments << "does not end";
    return process.readAllStandardOutput();
}

void Sway::start(QProcess &process, const QString &program, const QStringList &arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"WAYLAND_DISPLAY"_s, display());
    environment.insert(u"SWAYSOCK"_s, ipcSocket());
    environment.remove(u"DISPLAY"_s);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
}

QString Sway::ipcSocket() const
{
    const QStringList sockets =
        QDir(m_folder.path()).entryList({u"sway-ipc.*.sock"_s}, QDir::System);
    return sockets.isEmpty() ? QString() : m_folder.filePath(sockets.first());
}
