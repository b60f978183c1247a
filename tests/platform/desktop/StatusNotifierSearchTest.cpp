// SPDX-License-Identifier: MIT
#include "platform/linux/status-item/StatusNotifierSearch.h"

#include "StatusBars.h"
#include "tests/world/TestProgram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr int patience = 15'000;

/// Short where the test waits for it to pass, long where it must not pass.
constexpr StatusNotifierSearch::Patience impatient = {.withoutWatcher = 1ms, .withoutHost = 1ms};
constexpr StatusNotifierSearch::Patience patientWithHosts = {.withoutWatcher = 1ms,
                                                             .withoutHost = 600s};

/// Keeps a list of hosts, which may be empty, on a connection of its own, like any other program.
class Watcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
public:
    Watcher() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"watcher"_s))
    {
        m_bus.registerObject(
            path(), this, QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals);
        m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
    }

    ~Watcher() override
    {
        m_bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s);
        QDBusConnection::disconnectFromBus(u"watcher"_s);
    }

    bool hasHost()
    {
        Q_EMIT asked();
        return m_hasHost;
    }
    void letHostComeQuietly() { m_hasHost = true; }
    void letHostCome()
    {
        m_hasHost = true;
        Q_EMIT StatusNotifierHostRegistered();
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void asked();

private:
    static QString path() { return u"/StatusNotifierWatcher"_s; }

    QDBusConnection m_bus;
    bool m_hasHost = false;
};

} // namespace

class StatusNotifierSearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aHostThatIsThereIsFound()
    {
        Watcher watcher;
        watcher.letHostCome();
        StatusNotifierSearch search({});
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        QTRY_COMPARE(found.size(), 1);
    }

    void aHostThatComesLaterIsFoundAndToldOnce()
    {
        Watcher watcher;
        const QSignalSpy asked(&watcher, &Watcher::asked);
        StatusNotifierSearch search({});
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        QTRY_VERIFY(!asked.isEmpty());
        QVERIFY(found.isEmpty());
        watcher.letHostCome();
        QTRY_COMPARE(found.size(), 1);
        watcher.letHostCome();
        QCOMPARE(found.size(), 1);
    }

    void aHostOfWhichNobodyTellsIsFoundByAskingAgain()
    {
        Watcher watcher;
        const QSignalSpy asked(&watcher, &Watcher::asked);
        StatusNotifierSearch search({});
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        QTRY_VERIFY(!asked.isEmpty());
        watcher.letHostComeQuietly();
        QTRY_COMPARE(found.size(), 1);
    }

    void aListOfHostsThatComesLaterIsAsked()
    {
        StatusNotifierSearch search({});
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        Watcher watcher;
        watcher.letHostComeQuietly();
        QTRY_COMPARE(found.size(), 1);
    }

    void anOlderTrayIsTakenWhereNobodyKnowsOfHosts()
    {
        const auto tray = StatusBars::startOlderTray();
        StatusNotifierSearch search(patientWithHosts);
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        QTRY_COMPARE_WITH_TIMEOUT(found.size(), 1, patience);
    }

    void anOlderTrayIsNotTakenWhileAHostMayCome()
    {
        const auto tray = StatusBars::startOlderTray();
        XembedTray older;
        QTRY_VERIFY_WITH_TIMEOUT(older.isThere(), patience);
        Watcher watcher;
        const QSignalSpy asked(&watcher, &Watcher::asked);
        StatusNotifierSearch search(patientWithHosts);
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        // At the start, and again two seconds later.
        QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 2, patience);
        QVERIFY(found.isEmpty());
        watcher.letHostCome();
        QTRY_COMPARE(found.size(), 1);
    }

    void anOlderTrayIsTakenWhenNoHostCameInTime()
    {
        const auto tray = StatusBars::startOlderTray();
        Watcher watcher;
        StatusNotifierSearch search(impatient);
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        QTRY_COMPARE_WITH_TIMEOUT(found.size(), 1, patience);
    }

    void anOlderTrayThatComesLastIsTakenToo()
    {
        StatusNotifierSearch search(impatient);
        const QSignalSpy found(&search, &StatusNotifierSearch::found);
        search.start();
        XembedTray older;
        const QSignalSpy appeared(&older, &XembedTray::appeared);
        const auto tray = StatusBars::startOlderTray();
        QTRY_COMPARE_WITH_TIMEOUT(appeared.size(), 1, patience);
        QTRY_COMPARE(found.size(), 1);
    }
};

VELMORA_WIDGETS_TEST(StatusNotifierSearchTest)
#include "StatusNotifierSearchTest.moc"
