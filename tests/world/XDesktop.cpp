// SPDX-License-Identifier: MIT
#include "tests/world/XDesktop.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(20);

QString xdotool(const QStringList &arguments)
{
    return XDesktop::run(u"xdotool"_s, arguments);
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
    const QString line = run(u"xprop"_s, {u"-id"_s, QString::number(window), name});
    return line.contains(u'=') ? line.section(u'=', 1).trimmed() : line.section(u':', 1).trimmed();
}

QRect XDesktop::placeOf(WId window)
{
    const QStringList lines =
        xdotool({u"getwindowgeometry"_s, u"--shell"_s, QString::number(window)}).split(u'\n');
    const auto value = [&lines](const QString &name) {
        return lines.filter(QRegularExpression(u'^' + name + u'='))
            .value(0)
            .section(u'=', 1)
            .toInt();
    };
    return {value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s)};
}

WId XDesktop::activeWindow()
{
    return xdotool({u"getactivewindow"_s}).toULongLong();
}

void XDesktop::movePointer(QPoint place)
{
    xdotool({u"mousemove"_s, QString::number(place.x()), QString::number(place.y())});
}

void XDesktop::click(QPoint place)
{
    movePointer(place);
    xdotool({u"click"_s, u"1"_s});
}

void XDesktop::type(const QString &text)
{
    xdotool({u"type"_s, u"--delay"_s, u"5"_s, text});
}

void XDesktop::pressKey(const QString &key)
{
    xdotool({u"key"_s, key});
}

Terminal::Terminal(const QString &typedInto)
{
    m_process.start(u"xterm"_s, {u"-geometry"_s, u"40x10+20+20"_s, u"-e"_s, u"sh"_s, u"-c"_s,
                                 u"cat > \"$0\""_s, typedInto});
    const QString pid = QString::number(m_process.processId());
    const auto found = [this, &pid] {
        m_window = xdotool({u"search"_s, u"--onlyvisible"_s, u"--pid"_s, pid})
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
    xdotool({u"windowactivate"_s, QString::number(m_window)});
    if (!QTest::qWaitFor([this] { return isActive(); }, int(patience.count())))
        qWarning() << "xterm does not get the keyboard";
}

bool Terminal::hasKeyboard() const
{
    return xdotool({u"getwindowfocus"_s}).toULongLong() == m_window;
}
