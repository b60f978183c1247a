// SPDX-License-Identifier: MIT
#include "platform/DesktopLimits.h"
#include "tests/platform/desktop/StatusBars.h"
#include "tests/world/Sway.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 40'000;

/// Whether a program finds no way there to put the tray into its corner.
bool lacksTrayPlace(const QString &display)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"wayland"_s);
    environment.insert(u"WAYLAND_DISPLAY"_s, display);
    environment.remove(u"DISPLAY"_s);
    process.setProcessEnvironment(environment);
    process.start(QString::fromUtf8(LIMITS_PROCESS), {});
    process.waitForFinished(patience);
    const QByteArray output = process.readAllStandardOutput();
    if (output != "free\n" && output != "placed\n")
        qFatal("the program does not run there");
    return output == "free\n";
}

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

    void aCompositorThatPlacesPanelsHasAPlaceForTheTray()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        const Sway sway;
        QVERIFY(!lacksTrayPlace(sway.display()));
    }

    void aCompositorThatPlacesNoPanelsHasNone()
    {
        QProcess compositor;
        const QTemporaryDir folder;
        const QString display = folder.filePath(u"display"_s);
        compositor.start(QString::fromUtf8(CLIPBOARD_COMPOSITOR), {display});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(display), patience);
        QVERIFY(lacksTrayPlace(display));
        compositor.kill();
        compositor.waitForFinished();
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
