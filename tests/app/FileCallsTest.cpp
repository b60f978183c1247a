// SPDX-License-Identifier: MIT
#include "tests/world/SlowDisk.h"

#include "tests/app/AppRig.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr qsizetype mostCalls = 8;

} // namespace

class FileCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QDir(AppRig::folder()).removeRecursively();
        QDir().mkpath(AppRig::folder());
    }

    void aScreenshotCostsFewFileSystemCallsOnTheMainThread()
    {
        AppRig rig;
        rig.launch();
        QTRY_VERIFY(AppRig::windowTitled(u"Velmora"_s));
        // The first row creates fonts, symbols and a window that all others use.
        rig.takeAside(u"First.png"_s);
        QTRY_COMPARE(AppRig::newestName(), u"safari-harvest-festival-invitation.png"_s);
        SlowDisk::startCounting();
        rig.takeAside(u"Second.png"_s);
        QTRY_COMPARE(AppRig::newestName(), u"safari-harvest-festival-invitation-2.png"_s);
        QVERIFY(Waiting::settles([] { return SlowDisk::mainThreadCalls().size(); }, 500ms));
        const QByteArrayList calls = SlowDisk::mainThreadCalls();
        qInfo() << calls.size() << "calls";
        QVERIFY2(calls.size() <= mostCalls, calls.join('\n').constData());
    }
};

VELMORA_WIDGETS_TEST(FileCallsTest)
#include "FileCallsTest.moc"
