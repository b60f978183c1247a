// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"

#include "detection/ScreenshotFolderResolver.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <chrono>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{

/// A picture appears late when the main thread waits for longer than about a frame.
constexpr auto longestBlock = 16ms;

/// The longest time that the main thread has slept at a stretch: neither running, nor waiting for a
/// core of the machine, nor looking for events.
class Blocking
{
public:
    Blocking()
    {
        m_tick.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_tick, &QTimer::timeout, [this] { look(); });
        m_tick.start(1);
    }

    void begin()
    {
        m_wall = wall();
        m_awake = awake();
        m_longest = {};
    }

    std::chrono::nanoseconds longest()
    {
        look();
        return m_longest;
    }

private:
    static std::chrono::nanoseconds wall()
    {
        return std::chrono::steady_clock::now().time_since_epoch();
    }

    /// The time that the thread has run or waited for a core.
    static std::chrono::nanoseconds awake()
    {
        QFile statistics(u"/proc/thread-self/schedstat"_s);
        if (!statistics.open(QIODevice::ReadOnly))
            return {};
        const QList<QByteArray> numbers = statistics.readAll().split(' ');
        return std::chrono::nanoseconds(numbers.value(0).toLongLong() +
                                        numbers.value(1).toLongLong());
    }

    void look()
    {
        const auto nowWall = wall();
        const auto nowAwake = awake();
        m_longest = std::max(m_longest, (nowWall - m_wall) - (nowAwake - m_awake));
        m_wall = nowWall;
        m_awake = nowAwake;
    }

    QTimer m_tick;
    std::chrono::nanoseconds m_wall = {};
    std::chrono::nanoseconds m_awake = {};
    std::chrono::nanoseconds m_longest = {};
};

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

QString xfceFile()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + u"/xfce4/xfce4-screenshooter"_s;
}

bool setXfceFolder(const QString &path)
{
    return writeFile(xfceFile(), "screenshot_dir=file:" + QFile::encodeName(path) + '\n');
}

} // namespace

/// The coordinator on the desktops that it supports.
class ScreenshotFolderOfDesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_outside = std::make_unique<QTemporaryDir>();
        QDir(AppRig::folder()).removeRecursively();
        QVERIFY(QDir().mkpath(AppRig::folder()));
        const QString domain =
            qEnvironmentVariable("XDG_CONFIG_HOME") + u"/velmora/com.apple.screencapture.conf"_s;
        QVERIFY(writeFile(domain, "[General]\nlocation=" + AppRig::folder().toUtf8() + '\n'));
        m_path = qgetenv("PATH");
    }

    void cleanup()
    {
        qputenv("PATH", m_path);
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    void noDesktopBlocksTheMainThreadBetweenTheScreenshotAndItsRow_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        for (const char *desktop : {"GNOME", "ubuntu:GNOME", "KDE", "X-Cinnamon", "MATE", "XFCE",
                                    "COSMIC", "niri", "sway", "Hyprland", "Enlightenment"})
            QTest::newRow(desktop) << QByteArray(desktop);
        QTest::newRow("none") << QByteArray();
    }

    void noDesktopBlocksTheMainThreadBetweenTheScreenshotAndItsRow()
    {
        QFETCH(QByteArray, desktop);
        QVERIFY(putSlowToolsFirst());
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        // Where the tool saves is not queried when a location is stored.
        QVERIFY(QFile::remove(qEnvironmentVariable("XDG_CONFIG_HOME") +
                              u"/velmora/com.apple.screencapture.conf"_s));
        AppRig rig;
        rig.launch();
        const QString folder =
            ScreenshotFolderResolver::currentScreenshotFolder(*rig.platform.screenshotPreferences)
                .toLocalFile();
        QVERIFY(QDir().mkpath(folder));
        Waiting::letPass(300ms);

        Blocking blocking;
        auto shortest = 10s - 0ns;
        // The X server of a busy machine may be late; code that waits for a program is late each
        // time.
        for (int shot = 0; shot < 15 && shortest >= longestBlock; ++shot) {
            const QString name = u"shot %1.png"_s.arg(shot);
            QVERIFY(make(m_outside->filePath(name)));
            blocking.begin();
            QVERIFY(QFile::rename(m_outside->filePath(name), folder + u'/' + name));
            const QString detected = u"detected "_s + folder + u'/' + name;
            QTRY_VERIFY(!rig.log.messagesWith(detected).isEmpty());
            shortest = std::min(shortest, blocking.longest());
            Waiting::letPass(50ms);
        }
        QVERIFY2(shortest < longestBlock, qPrintable(QString::number(shortest / 1us)));
        QVERIFY2(!QFile::exists(m_outside->filePath(u"started"_s)), "a program was started");
        QDir(folder).removeRecursively();
    }

    void aToolThatSavesElsewhereIsFollowedWithTheScreenshotThatItSaved()
    {
        QVERIFY(QFile::remove(qEnvironmentVariable("XDG_CONFIG_HOME") +
                              u"/velmora/com.apple.screencapture.conf"_s));
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString one = m_outside->filePath(u"one"_s);
        const QString two = m_outside->filePath(u"two"_s);
        QVERIFY(QDir().mkpath(one) && QDir().mkpath(two));
        QVERIFY(setXfceFolder(one));
        AppRig rig;
        rig.launch();
        const auto isDetected = [&rig](const QString &path) {
            return QTest::qWaitFor(
                [&] { return rig.log.messagesWith(u"detected "_s + path).size() == 1; });
        };
        QVERIFY(make(one + u"/first.png"_s));
        QVERIFY(isDetected(one + u"/first.png"_s));

        // As the tool does: the picture first, then its settings.
        QVERIFY(make(two + u"/a.png"_s));
        QVERIFY(setXfceFolder(two));
        QVERIFY(isDetected(two + u"/a.png"_s));
        QVERIFY(make(two + u"/b.png"_s));
        QVERIFY(isDetected(two + u"/b.png"_s));

        // It stores a file where it should store a folder.
        QVERIFY(make(m_outside->filePath(u"shot.png"_s)));
        QVERIFY(setXfceFolder(m_outside->filePath(u"shot.png"_s)));
        Waiting::letPass(300ms);
        QVERIFY(make(two + u"/c.png"_s));
        QVERIFY(isDetected(two + u"/c.png"_s));
        const auto detected = [&] {
            return rig.log.messagesWith(u"detected "_s + m_outside->path()).size();
        };
        QVERIFY(Waiting::staysTrue([&] { return detected() == 4; }, 500ms));
        QVERIFY(QFile::remove(xfceFile()));
    }

private:
    static bool make(const QString &path)
    {
        QImage picture(320, 200, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        return picture.save(path);
    }

    /// Waiting for one of them takes long, and each records that it was started.
    bool putSlowToolsFirst() const
    {
        const QString started = m_outside->filePath(u"started"_s);
        const QByteArray script =
            "#!/bin/sh\nsleep 0.3\necho >>'" + QFile::encodeName(started) + "'\n";
        for (const QString &tool : {u"gsettings"_s, u"dconf"_s, u"xdg-user-dir"_s,
                                    u"kreadconfig5"_s, u"kreadconfig6"_s, u"xfconf-query"_s}) {
            const QString path = m_outside->filePath(u"tools/"_s + tool);
            if (!writeFile(path, script) ||
                !QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner))
                return false;
        }
        return qputenv("PATH", QFile::encodeName(m_outside->filePath(u"tools"_s)) + ':' + m_path);
    }

    QByteArray m_path;
    std::unique_ptr<QTemporaryDir> m_outside;
};

VELMORA_WIDGETS_TEST(ScreenshotFolderOfDesktopTest)
#include "ScreenshotFolderOfDesktopTest.moc"
