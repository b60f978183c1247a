// SPDX-License-Identifier: MIT
#include "tray/RowDismissals.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace
{

const QUuid one = QUuid::createUuid();
const QUuid other = QUuid::createUuid();

} // namespace

class RowDismissalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowIsDueOnceAfterItsTime()
    {
        RowDismissals dismissals;
        QSignalSpy due(&dismissals, &RowDismissals::due);
        QElapsedTimer watch;
        watch.start();
        dismissals.schedule(one, 120ms);
        QVERIFY(due.wait());
        QVERIFY(watch.elapsed() >= 119);
        QCOMPARE(due.takeFirst().first().toUuid(), one);
        QVERIFY(!due.wait(300));
    }

    void eachRowHasItsOwnTime()
    {
        RowDismissals dismissals;
        QSignalSpy due(&dismissals, &RowDismissals::due);
        dismissals.schedule(one, 200ms);
        dismissals.schedule(other, 20ms);
        QTRY_COMPARE(due.size(), 2);
        QCOMPARE(due[0].first().toUuid(), other);
        QCOMPARE(due[1].first().toUuid(), one);
    }

    void aCancelledRowIsNeverDue()
    {
        RowDismissals dismissals;
        QSignalSpy due(&dismissals, &RowDismissals::due);
        dismissals.schedule(one, 20ms);
        dismissals.schedule(other, 60ms);
        dismissals.cancel(one);
        dismissals.cancel(QUuid::createUuid());
        QVERIFY(due.wait());
        QCOMPARE(due.first().first().toUuid(), other);
        QVERIFY(!due.wait(100));
    }

    void aNewTimeReplacesTheEarlierOne()
    {
        RowDismissals dismissals;
        QSignalSpy due(&dismissals, &RowDismissals::due);
        QElapsedTimer watch;
        watch.start();
        dismissals.schedule(one, 10ms);
        dismissals.schedule(one, 150ms);
        QVERIFY(due.wait());
        QVERIFY(watch.elapsed() >= 149);
        QVERIFY(!due.wait(100));
    }
};

VELMORA_WIDGETS_TEST(RowDismissalsTest)
#include "RowDismissalsTest.moc"
