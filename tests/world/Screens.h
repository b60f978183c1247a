// SPDX-License-Identifier: MIT
#pragma once

#include "tests/world/XDesktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

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
            randr(QStringList{u"--newmode"_s, mode, u"0"_s} + timings);
            randr({u"--addmode"_s, u"screen"_s, mode});
        }
        randr({u"--output"_s, u"screen"_s, u"--mode"_s, mode});
        return QTest::qWaitFor([size] { return QGuiApplication::primaryScreen()->size() == size; });
    }

    /// A monitor on the left and one on the right.
    bool divide() const
    {
        const int half = m_whole.width() / 2;
        const QString size = u"%1/200x%2/200"_s.arg(half).arg(m_whole.height());
        randr({u"--setmonitor"_s, u"left"_s, size + u"+0+0", u"screen"_s});
        randr({u"--setmonitor"_s, u"right"_s, size + u"+%1+0"_s.arg(half), u"none"_s});
        return QTest::qWaitFor([] { return QGuiApplication::screens().size() == 2; });
    }

    bool joinMonitors() const
    {
        for (const char *name : {"left", "right"})
            randr({u"--delmonitor"_s, QString::fromLatin1(name)});
        return QTest::qWaitFor([] { return QGuiApplication::screens().size() == 1; });
    }

private:
    static void randr(const QStringList &arguments) { XDesktop::run(u"xrandr"_s, arguments); }

    QSize m_whole;
};
