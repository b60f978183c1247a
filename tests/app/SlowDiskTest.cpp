#include "tests/world/SlowDisk.h"

#include "tests/app/AppRig.h"

#include <QAbstractEventDispatcher>
#include <QPushButton>
#include <QTest>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr qsizetype mostCalls = 8;
constexpr auto longestTurn = 100ms;
constexpr int patience = 60'000;

/// By how much the disk holds up the event loop of this thread in one turn. Depends on no clock.
class Turns : public QObject
{
public:
    Turns()
    {
        const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &Turns::end);
        connect(loop, &QAbstractEventDispatcher::awake, this, &Turns::end);
    }

    std::chrono::milliseconds longest = 0ms;
    QByteArrayList callsOfLongest;

private:
    void end()
    {
        const auto delay = SlowDisk::mainThreadDelay();
        if (delay > longest) {
            longest = delay;
            callsOfLongest = SlowDisk::mainThreadCalls();
        }
        SlowDisk::startCounting();
    }
};

/// Another program's disk calls are not ours.
void takeAside(const AppRig &rig, const QString &name)
{
    const std::unique_ptr<QThread> tool(QThread::create([&rig, name] { rig.take(name); }));
    tool->start();
    tool->wait();
}

bool existsAside(const QString &path)
{
    bool exists = false;
    const std::unique_ptr<QThread> looking(
        QThread::create([&exists, path] { exists = QFile::exists(path); }));
    looking->start();
    looking->wait();
    return exists;
}

QString newestName()
{
    const QList<ScreenshotRowView *> rows = AppRig::rows();
    const auto newest =
        std::min_element(rows.begin(), rows.end(),
                         [](const auto *one, const auto *other) { return one->y() < other->y(); });
    return newest == rows.end() ? QString() : (*newest)->fileURL().fileName();
}

void press(const QString &accessibleName)
{
    for (auto *button : AppRig::rows().constFirst()->findChildren<QPushButton *>()) {
        if (button->accessibleName() == accessibleName)
            button->click();
    }
}

} // namespace

class SlowDiskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QDir(AppRig::folder()).removeRecursively();
        QDir().mkpath(AppRig::folder());
    }
    void cleanup() { SlowDisk::fast(); }

    void aScreenshotCostsFewFileSystemCallsOnTheMainThread()
    {
        AppRig rig;
        rig.launch();
        // The first row makes fonts, symbols and a window that all others use.
        takeAside(rig, u"First.png"_s);
        QTRY_COMPARE(newestName(), u"safari-harvest-festival-invitation.png"_s);
        SlowDisk::startCounting();
        takeAside(rig, u"Second.png"_s);
        QTRY_COMPARE(newestName(), u"safari-harvest-festival-invitation-2.png"_s);
        QTest::qWait(500);
        const QByteArrayList calls = SlowDisk::mainThreadCalls();
        qInfo() << calls.size() << "calls";
        QVERIFY2(calls.size() <= mostCalls, calls.join('\n').constData());
    }

    void aSlowDiskNeverHoldsUpTheWindow()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        AppRig rig;
        rig.launch();
        takeAside(rig, u"First.png"_s);
        QTRY_COMPARE(newestName(), u"safari-harvest-festival-invitation.png"_s);
        press(u"Dismiss"_s);
        QTRY_VERIFY(AppRig::rows().isEmpty());

        SlowDisk::slow({AppRig::folder().toUtf8(), qgetenv("XDG_CONFIG_HOME"),
                        qgetenv("XDG_DATA_HOME") + "/Trash", "/tmp/Velmora.log"},
                       50ms);
        SlowDisk::startCounting();
        Turns turns;
        takeAside(rig, u"Second.png"_s);
        QTRY_COMPARE_WITH_TIMEOUT(newestName(), u"safari-harvest-festival-invitation-2.png"_s,
                                  patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.pasteboard->changes > 0, patience);
        auto *field = AppRig::rows().constFirst()->findChild<QLineEdit *>();
        field->selectAll();
        QTest::keyClicks(field, u"mine"_s);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(newestName(), u"mine.png"_s, patience);
        const int copies = rig.pasteboard->changes;
        press(u"Copy"_s);
        QTRY_COMPARE_WITH_TIMEOUT(rig.pasteboard->changes, copies + 1, patience);
        press(u"Undo"_s);
        QTRY_COMPARE_WITH_TIMEOUT(newestName(), u"safari-harvest-festival-invitation-2.png"_s,
                                  patience);
        press(u"Move to Trash"_s);
        QTRY_VERIFY_WITH_TIMEOUT(AppRig::rows().isEmpty(), patience);
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_VERIFY_WITH_TIMEOUT(
            existsAside(AppRig::folder() + u"/safari-harvest-festival-invitation-2.png"_s),
            patience);
        SlowDisk::fast();
        qInfo() << "the longest turn" << turns.longest.count() << "ms";
        QVERIFY2(turns.longest <= longestTurn, turns.callsOfLongest.join('\n').constData());
    }
};

QTEST_MAIN(SlowDiskTest)
#include "SlowDiskTest.moc"
