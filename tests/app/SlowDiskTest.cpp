// SPDX-License-Identifier: MIT
#include "tests/world/SlowDisk.h"

#include "style/ImageView.h"
#include "tests/app/AppRig.h"
#include "tests/world/TestProgram.h"
#include "tray/FilenameTextField.h"

#include <QAbstractEventDispatcher>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr auto longestTurn = 100ms;
constexpr int patience = 15'000;

/// The longest delay that the disk causes this thread's event loop in one turn. Depends on no
/// clock.
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

    void verify() const
    {
        qInfo() << "the longest turn" << longest.count() << "ms";
        QVERIFY2(longest <= longestTurn, callsOfLongest.join('\n').constData());
    }

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

bool existsAside(const QString &path)
{
    bool exists = false;
    const std::unique_ptr<QThread> looking(
        QThread::create([&exists, path] { exists = QFile::exists(path); }));
    looking->start();
    looking->wait();
    return exists;
}

/// It would ask the disk and take the keyboard in the midst of the test. A program that is started
/// for one of its actions does not show it; there is nothing to undo.
void keepWelcomeClosed(const AppRig &rig)
{
    Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
}

void makeDisksSlow()
{
    SlowDisk::slow({AppRig::folder().toUtf8(), qgetenv("XDG_CONFIG_HOME"),
                    qgetenv("XDG_DATA_HOME") + "/Trash", "/tmp/Velmora.log"},
                   50ms);
}

int greenThumbnails()
{
    const QWidget *window = AppRig::windowTitled(u"Recent Screenshots"_s);
    const auto views = window ? window->findChildren<ImageView *>() : QList<ImageView *>();
    return int(std::count_if(views.begin(), views.end(), [](const ImageView *view) {
        const QImage image = view->image();
        return image.pixelColor(image.rect().center()) == QColor(Qt::darkGreen);
    }));
}

bool rowSays(const QString &text)
{
    const auto labels = AppRig::rows().constFirst()->findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(),
                       [&text](const QLabel *label) { return label->text() == text; });
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

    void aSlowDiskNeverHoldsUpTheWindow()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        AppRig rig;
        rig.launch();
        keepWelcomeClosed(rig);
        rig.takeAside(u"First.png"_s);
        QTRY_COMPARE(AppRig::newestName(), u"safari-harvest-festival-invitation.png"_s);
        press(u"Dismiss"_s);
        QTRY_VERIFY(AppRig::rows().isEmpty());

        makeDisksSlow();
        SlowDisk::startCounting();
        Turns turns;
        int copies = rig.pasteboard->changes;
        rig.takeAside(u"Second.png"_s);
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::newestName(),
                                  u"safari-harvest-festival-invitation-2.png"_s, patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.pasteboard->changes > copies, patience);
        copies = rig.pasteboard->changes;
        press(u"Copy"_s);
        QTRY_VERIFY_WITH_TIMEOUT(rig.pasteboard->changes > copies, patience);
        press(u"Move to Trash"_s);
        QTRY_VERIFY_WITH_TIMEOUT(AppRig::rows().isEmpty(), patience);
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_VERIFY_WITH_TIMEOUT(
            existsAside(AppRig::folder() + u"/safari-harvest-festival-invitation-2.png"_s),
            patience);
        turns.verify();
    }

    void aSlowDiskNeverHoldsUpTheLaunch()
    {
        makeDisksSlow();
        SlowDisk::startCounting();
        AppRig rig;
        Turns turns;
        rig.launch();
        keepWelcomeClosed(rig);
        const QByteArrayList calls = SlowDisk::mainThreadCalls();
        QVERIFY2(SlowDisk::mainThreadDelay() <= longestTurn, calls.join('\n').constData());
        rig.takeAside(u"First.png"_s);
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::newestName(), u"safari-harvest-festival-invitation.png"_s,
                                  patience);
        turns.verify();
    }

    void aNameCanBeTypedAndTakenBackMeanwhile()
    {
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        AppRig rig;
        rig.launch();
        keepWelcomeClosed(rig);
        rig.takeAside(u"First.png"_s);
        QTRY_COMPARE(AppRig::newestName(), u"safari-harvest-festival-invitation.png"_s);

        makeDisksSlow();
        SlowDisk::startCounting();
        Turns turns;
        auto *field = AppRig::rows().constFirst()->findChild<FilenameTextField *>();
        QTest::mouseClick(field, Qt::LeftButton);
        QTRY_VERIFY(field->hasFocus());
        field->selectAll();
        QTest::keyClicks(field, u"Typed name"_s);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::newestName(), u"typed-name.png"_s, patience);
        QTRY_VERIFY_WITH_TIMEOUT(rowSays(u"Saved as typed-name.png"_s), patience);
        QVERIFY(existsAside(AppRig::folder() + u"/typed-name.png"_s));
        press(u"Undo"_s);
        QTRY_VERIFY_WITH_TIMEOUT(rowSays(u"Restored"_s), patience);
        QCOMPARE(AppRig::newestName(), u"safari-harvest-festival-invitation.png"_s);
        QVERIFY(existsAside(AppRig::folder() + u"/safari-harvest-festival-invitation.png"_s));
        turns.verify();
    }

    void norDoesItHoldUpTheListOfRecentScreenshots()
    {
        AppRig rig;
        for (int number = 0; number < 6; ++number)
            rig.take(u"Shot %1.png"_s.arg(number));
        rig.launch();
        makeDisksSlow();
        SlowDisk::startCounting();
        Turns turns;
        Q_EMIT rig.platform.runningInstance->actionRequested(u"recent"_s);
        QTRY_COMPARE_WITH_TIMEOUT(greenThumbnails(), 6, patience);
        turns.verify();
    }
};

VELMORA_WIDGETS_TEST(SlowDiskTest)
#include "SlowDiskTest.moc"
