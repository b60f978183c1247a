// SPDX-License-Identifier: MIT
#include "platform/FrontmostApplication.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::milliseconds patience = std::chrono::seconds(20);

/// Leaves room for other load on the test's machine; an attack that works stops everything for
/// good.
constexpr std::chrono::milliseconds longestPause{1000};

/// From the end of an attack until the application in front is known again.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::chrono::milliseconds longestRecovery{10'000};
#else
constexpr std::chrono::milliseconds longestRecovery{1000};
#endif

/// The longest time for which this thread's event loop did not run.
class Pauses : public QObject
{
public:
    Pauses()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_longest = std::max(m_longest, m_sinceLast.restart());
            ++m_turns;
        });
        m_timer.start(std::chrono::milliseconds(5));
        m_sinceLast.start();
    }

    qint64 longest() const { return std::max(m_longest, m_sinceLast.elapsed()); }
    int turns() const { return m_turns; }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    qint64 m_longest = 0;
    int m_turns = 0;
};

class HostileClient
{
public:
    explicit HostileClient(const QString &what)
    {
        m_process.start(QStringLiteral(HOSTILE_CLIENT), {what});
        m_process.waitForStarted();
    }
    ~HostileClient()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

private:
    QProcess m_process;
};

} // namespace

/// Other programs can do what they like to an X server; this one stays responsive, and knows the
/// application in front once they are done.
class HostileClientTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_front = makeFrontmostApplication(); }

    void theEventLoopGoesOn_data()
    {
        QTest::addColumn<QString>("attack");
        QTest::newRow("changes of the active window") << u"flood"_s;
        QTest::newRow("windows that die at once") << u"mayflies"_s;
        QTest::newRow("a giant class name") << u"giant"_s;
    }

    void theEventLoopGoesOn()
    {
        QFETCH(QString, attack);
        const Terminal terminal(m_place.filePath(u"typed"_s));
        QTRY_COMPARE(nameInFront(), u"XTerm"_s);
        {
            const HostileClient client(attack);
            const Pauses pauses;
            // Some screenshots are taken meanwhile.
            QTimer asking;
            connect(&asking, &QTimer::timeout, this, [this] { m_front->current(); });
            asking.start(std::chrono::milliseconds(100));
            QTRY_VERIFY_WITH_TIMEOUT(pauses.turns() > 300, int(patience.count()));
            QVERIFY(client.isRunning());
            QVERIFY2(pauses.longest() < longestPause.count(),
                     qPrintable(QString::number(pauses.longest()) + u" ms"_s));
        }
        const Terminal next(m_place.filePath(u"typed next"_s));
        QElapsedTimer recovery;
        recovery.start();
        QTRY_COMPARE_WITH_TIMEOUT(nameInFront(), u"XTerm"_s, int(patience.count()));
        QVERIFY2(recovery.elapsed() < longestRecovery.count(),
                 qPrintable(QString::number(recovery.elapsed())));
    }

    void amongMoreChangesThanCanBeLookedAtOneIsSeen()
    {
        const HostileClient client(u"flood"_s);
        // QTRY_VERIFY would look once more after it has seen one.
        const QStringList names{u"Paint"_s, u"Fox-esr"_s};
        QVERIFY(
            QTest::qWaitFor([&] { return names.contains(nameInFront()); }, int(patience.count())));
    }

    void aClassNameThatIsNoNameIsNone()
    {
        const Terminal terminal(m_place.filePath(u"typed"_s));
        QTRY_COMPARE(nameInFront(), u"XTerm"_s);
        const QSignalSpy activated(m_front.get(), &FrontmostApplication::activated);
        QTRY_COMPARE(activated.size(), 1);
        const HostileClient client(u"giant"_s);
        QTRY_VERIFY(XDesktop::activeWindow() != terminal.window());
        QCOMPARE(nameInFront(), u"XTerm"_s);
        const Pauses pauses;
        QTRY_VERIFY(pauses.turns() > 100);
        QCOMPARE(nameInFront(), u"XTerm"_s);
        QCOMPARE(activated.size(), 1);
    }

private:
    QString nameInFront() const
    {
        const std::optional<Application> application = m_front->current();
        return application ? application->localizedName : QString();
    }

    QTemporaryDir m_place;
    std::unique_ptr<FrontmostApplication> m_front;
};

VELMORA_WIDGETS_TEST(HostileClientTest)
#include "HostileClientTest.moc"
