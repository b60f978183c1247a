// SPDX-License-Identifier: MIT
#include "tests/tray/TrayOnSwayFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"
#include "tests/world/XDesktop.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The tray as a panel of a wlroots desktop, when its screen is unplugged.
class TrayUnpluggedTest : public QObject, TrayOnSwayFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        // The mouse of the test's world is also one of sway's.
        XDesktop::movePointer({1599, 999});
    }

    void init()
    {
        begin(Sway::X11::No, screenSettings("X11"), Sway::Screens::Windows);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
    }

    void cleanup()
    {
        QCOMPARE(m_tray.state(), QProcess::Running);
        end();
    }

    void itMovesToAnotherScreen()
    {
        addSecondScreen(u"X11"_s);
        unplug();
        worksAt(trayPlace(2));
    }

    void itWaitsWhileThereIsNoScreen()
    {
        unplug();
        QTRY_VERIFY_WITH_TIMEOUT(photograph().isNull(), patience);
        m_tray.write("meanwhile.png\n");
        QVERIFY(QTest::qWaitFor([&] { return rests(); }, patience));
        m_sway->command(u"create_output"_s);
        worksAt(trayPlace(3));
    }

    void aNameThatIsBeingTypedIsNotLost()
    {
        addSecondScreen(u"X11"_s);
        QProcess typing;
        m_sway->start(typing, u"wtype"_s, {u"-"_s});
        m_pointer->click(nameIn(trayPlace(2)));
        QTRY_VERIFY_WITH_TIMEOUT(trayHasKeyboard(), patience);
        const QImage before = photograph();
        typing.write(" half");
        typing.closeWriteChannel();
        QTRY_COMPARE_WITH_TIMEOUT(typing.state(), QProcess::NotRunning, patience);
        QTRY_VERIFY_WITH_TIMEOUT(photograph() != before, patience);
        unplug();
        worksAt(trayPlace(2));
        QTRY_VERIFY_WITH_TIMEOUT(hasPrinted("half"), patience);
    }

private:
    void unplug()
    {
        Sway::unplug(u"X11-1"_s);
        setDesktopSize(screenSize);
    }

    /// Whether the tray's program hardly needs the processor.
    bool rests() const
    {
        const auto ticks = [this] {
            QFile file(u"/proc/%1/stat"_s.arg(m_tray.processId()));
            [[maybe_unused]] const bool isOpen = file.open(QFile::ReadOnly);
            const QList<QByteArray> fields = file.readAll().split(' ');
            return fields.value(13).toLongLong() + fields.value(14).toLongLong();
        };
        const qint64 before = ticks();
        Waiting::letPass(1s);
        return ticks() - before < 20;
    }
};

VELMORA_WIDGETS_TEST(TrayUnpluggedTest)
#include "TrayUnpluggedTest.moc"
