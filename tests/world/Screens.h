// SPDX-License-Identifier: MIT
#pragma once

#include "tests/world/XDesktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

/// The screens of a test's world, which can be made smaller and divided into monitors, as a user
/// might do it. Destroying this object restores them.
class Screens
{
public:
    Screens() : m_whole(QGuiApplication::primaryScreen()->size()) {}
    ~Screens()
    {
        joinMonitors();
        setSize(m_whole);
    }
    Q_DISABLE_COPY_MOVE(Screens)

    QSize whole() const { return m_whole; }

    /// No larger than the original size. Returns once the program knows of it.
    bool setSize(QSize size) const
    {
        const QString width = QString::number(size.width());
        const QString height = QString::number(size.height());
        const QString mode = width + u'x' + height;
        const QStringList timings = {width, width, width, width, height, height, height, height};
        // A mode that already exists is not created again.
        if (size != m_whole) {
            randr(QStringList{QStringLiteral("--newmode"), mode, QStringLiteral("0")} + timings);
            randr({QStringLiteral("--addmode"), QStringLiteral("screen"), mode});
        }
        randr(
            {QStringLiteral("--output"), QStringLiteral("screen"), QStringLiteral("--mode"), mode});
        return QTest::qWaitFor([size] { return QGuiApplication::primaryScreen()->size() == size; });
    }

    /// A monitor on the left and one on the right.
    bool divide() const
    {
        const int half = m_whole.width() / 2;
        const QString size = QStringLiteral("%1/200x%2/200").arg(half).arg(m_whole.height());
        randr({QStringLiteral("--setmonitor"), QStringLiteral("left"), size + u"+0+0",
               QStringLiteral("screen")});
        randr({QStringLiteral("--setmonitor"), QStringLiteral("right"),
               size + QStringLiteral("+%1+0").arg(half), QStringLiteral("none")});
        return QTest::qWaitFor([] { return QGuiApplication::screens().size() == 2; });
    }

    bool joinMonitors() const
    {
        for (const char *name : {"left", "right"})
            randr({QStringLiteral("--delmonitor"), QString::fromLatin1(name)});
        return QTest::qWaitFor([] { return QGuiApplication::screens().size() == 1; });
    }

private:
    static void randr(const QStringList &arguments)
    {
        XDesktop::run(QStringLiteral("xrandr"), arguments);
    }

    QSize m_whole;
};
