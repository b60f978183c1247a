// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/TestProgram.h"

#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

/// The tray when Qt shows no windows on any server, although an X server is running.
class TrayWithoutScreenTest : public QObject, ControllerFixture
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

private Q_SLOTS:
    void initTestCase() { QCOMPARE(QGuiApplication::platformName(), u"offscreen"_s); }
    void init() { begin(); }
    void cleanup() { end(); }

    void itShowsScreenshotsAllTheSame()
    {
        add("one.png");
        QVERIFY(panel()->isVisible());
        add("two.png");
        QCOMPARE(names(), (QStringList{u"two.png"_s, u"one.png"_s}));
        click(rows().first(), "Dismiss");
        click(rows().first(), "Dismiss");
        QVERIFY(!panel()->isVisible());
        add("three.png");
        QVERIFY(panel()->isVisible());
    }
};

VELMORA_WIDGETS_TEST(TrayWithoutScreenTest)
#include "TrayWithoutScreenTest.moc"
