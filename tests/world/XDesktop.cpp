// SPDX-License-Identifier: MIT
#include "tests/world/XDesktop.h"

#include <QTest>

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(20);

QString xdotool(const QStringList &arguments)
{
    return XDesktop::run(QStringLiteral("xdotool"), arguments);
}

} // namespace

QString XDesktop::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool ended = QTest::qWaitFor(
        [&process] { return process.state() == QProcess::NotRunning; }, int(patience.count()));
    if (!ended)
        qWarning() << program << arguments << "does not end";
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString XDesktop::property(WId window, const QString &name)
{
    const QString line =
        run(QStringLiteral("xprop"), {QStringLiteral("-id"), QString::number(window), name});
    return line.contains(u'=') ? line.section(u'=', 1).trimmed() : line.section(u':', 1).trimmed();
}

WId XDesktop::activeWindow()
{
    return xdotool({QStringLiteral("getactivewindow")}).toULongLong();
}

void XDesktop::movePointer(QPoint place)
{
    xdotool({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y())});
}

void XDesktop::click(QPoint place)
{
    movePointer(place);
    xdotool({QStringLiteral("click"), QStringLiteral("1")});
}

void XDesktop::type(const QString &text)
{
    xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), text});
}

void XDesktop::pressKey(const QString &key)
{
    xdotool({QStringLiteral("key"), key});
}

Terminal::Terminal(const QString &typedInto)
{
    m_process.start(QStringLiteral("xterm"),
                    {QStringLiteral("-geometry"), QStringLiteral("40x10+20+20"),
                     QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                     QStringLiteral("cat > \"$0\""), typedInto});
    const QString pid = QString::number(m_process.processId());
    const auto found = [this, &pid] {
        m_window = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                            QStringLiteral("--pid"), pid})
                       .section(u'\n', 0, 0)
                       .toULongLong();
        return m_window != 0;
    };
    if (!QTest::qWaitFor(found, int(patience.count())))
        qWarning() << "xterm does not show";
    activate();
}

Terminal::~Terminal()
{
    m_process.kill();
    m_process.waitForFinished();
}

void Terminal::activate() const
{
    xdotool({QStringLiteral("windowactivate"), QString::number(m_window)});
    if (!QTest::qWaitFor([this] { return isActive(); }, int(patience.count())))
        qWarning() << "xterm does not get the keyboard";
}

bool Terminal::hasKeyboard() const
{
    return xdotool({QStringLiteral("getwindowfocus")}).toULongLong() == m_window;
}
