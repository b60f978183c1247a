// SPDX-License-Identifier: MIT
#include "platform/DesktopLimits.h"
#include "tests/platform/desktop/StatusBars.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace
{

constexpr int patience = 40'000;

} // namespace

/// What is missing and what is not, with real desktops.
class DesktopLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { qunsetenv("WAYLAND_DISPLAY"); }

    void aStatusBarThatComesLateIsMissingUntilThen()
    {
        const auto limits = makeDesktopLimits();
        QVERIFY(limits->missing().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(limits->missing(), QList{DesktopLimit::StatusItem}, patience);
        QSignalSpy changes(limits.get(), &DesktopLimits::changed);
        const auto tray = StatusBars::startOlderTray();
        QTRY_COMPARE_WITH_TIMEOUT(limits->missing(), QList<DesktopLimit>(), patience);
        QCOMPARE(changes.size(), 1);
    }

    void aCompositorThatTellsOfItsWindowsLacksNoApplicationInFront()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        const Sway sway;
        qputenv("WAYLAND_DISPLAY", sway.display().toUtf8());
        const auto limits = makeDesktopLimits();
        const auto tells = [&] {
            return !limits->missing().contains(DesktopLimit::ApplicationInFront);
        };
        QVERIFY(Waiting::staysTrue(tells, 1s));
    }

    void aWaylandDesktopThatTellsNothingLacksTheApplicationInFront()
    {
        qputenv("WAYLAND_DISPLAY", "nowhere");
        const auto limits = makeDesktopLimits();
        QTRY_COMPARE_WITH_TIMEOUT(limits->missing(), QList{DesktopLimit::ApplicationInFront},
                                  patience);
    }
};

VELMORA_WIDGETS_TEST(DesktopLimitsTest)
#include "DesktopLimitsTest.moc"
