// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Connection.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/types.h>
#include <vector>

namespace
{

constexpr int patience = 10'000;

/// How long a process that does not answer may delay the next one, with room for a busy machine.
constexpr int longestHang = 4'000;

/// One start of the program.
class Instance
{
public:
    explicit Instance(const QProcessEnvironment &environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(INSTANCE_PROCESS), QStringList());
    }

    ~Instance()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// The next line of its output.
    QString nextLine()
    {
        QElapsedTimer timer;
        timer.start();
        while (!m_process.canReadLine() && timer.elapsed() < patience) {
            if (!m_process.waitForReadyRead(patience))
                break;
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    bool saysNothingMore() { return !m_process.canReadLine(); }
    int exitCode()
    {
        m_process.waitForFinished(patience);
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    void send(int signal) { ::kill(pid_t(m_process.processId()), signal); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

/// What another program sees on the bus.
QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAll()).trimmed();
}

QString callOverBus(const QString &method, const QStringList &arguments)
{
    return run(QStringLiteral("gdbus"),
               QStringList{QStringLiteral("call"), QStringLiteral("--session"),
                           QStringLiteral("--dest"), QStringLiteral("app.velmora.Velmora"),
                           QStringLiteral("--object-path"), QStringLiteral("/app/velmora/Velmora"),
                           QStringLiteral("--method"),
                           QStringLiteral("org.freedesktop.Application.") + method} +
                   arguments);
}

const QString runs = QStringLiteral("runs");
const QString anotherRuns = QStringLiteral("another runs");

} // namespace

class RunningInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_runtime.emplace();
        m_withBus = QProcessEnvironment::systemEnvironment();
        m_withoutBus = m_withBus;
        m_withoutBus.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                            QStringLiteral("unix:path=/nonexistent/bus"));
        m_withoutBus.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime->path());
    }

    void aSecondStartReopensTheFirstAndEnds_data() { waysOfMeeting(); }
    void aSecondStartReopensTheFirstAndEnds()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        Instance second(environment());
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.nextLine(), QStringLiteral("reopened"));
        Instance third(environment());
        QCOMPARE(third.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), QStringLiteral("reopened"));
    }

    void theSecondsTokensReachTheFirst_data() { waysOfMeeting(); }
    void theSecondsTokensReachTheFirst()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        QProcessEnvironment launched = environment();
        launched.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("leave-1"));
        Instance second(launched);
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), QStringLiteral("reopened leave-1"));
    }

    void theDesktopHearsThatTheLaunchIsOver_data() { waysOfMeeting(); }
    void theDesktopHearsThatTheLaunchIsOver()
    {
        X11Connection desktop(XCB_EVENT_MASK_PROPERTY_CHANGE);
        QByteArray heard;
        connect(&desktop, &X11Connection::eventArrived, this,
                [&heard](const xcb_generic_event_t *event) {
                    const auto *message =
                        reinterpret_cast<const xcb_client_message_event_t *>(event);
                    if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE)
                        heard += QByteArray(reinterpret_cast<const char *>(message->data.data8),
                                            sizeof message->data.data8);
                });
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        QProcessEnvironment launched = environment();
        launched.insert(QStringLiteral("DESKTOP_STARTUP_ID"),
                        QStringLiteral("panel/\"velmora\"/7-1_TIME123456"));
        Instance second(launched);
        QCOMPARE(second.nextLine(), anotherRuns);
        const QByteArray ended = "remove: ID=panel/\\\"velmora\\\"/7-1_TIME123456";
        QTRY_COMPARE(heard.left(heard.indexOf('\0')), ended);
    }

    void aFirstThatDiedIsSucceeded_data() { waysOfMeeting(); }
    void aFirstThatDiedIsSucceeded()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        first.kill();
        Instance second(environment());
        QCOMPARE(second.nextLine(), runs);
        Instance third(environment());
        QCOMPARE(third.nextLine(), anotherRuns);
        QCOMPARE(second.nextLine(), QStringLiteral("reopened"));
    }

    void aFirstThatHangsCostsTwoSecondsAndHearsOfItLater_data() { waysOfMeeting(); }
    void aFirstThatHangsCostsTwoSecondsAndHearsOfItLater()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        first.send(SIGSTOP);
        QElapsedTimer timer;
        timer.start();
        Instance second(environment());
        QCOMPARE(second.nextLine(), anotherRuns);
        QVERIFY2(timer.elapsed() < longestHang, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(second.exitCode(), 0);
        first.send(SIGCONT);
        QCOMPARE(first.nextLine(), QStringLiteral("reopened"));
    }

    void aFirstThatDiesWhileItHangsIsSucceededAtOnce_data() { waysOfMeeting(); }
    void aFirstThatDiesWhileItHangsIsSucceededAtOnce()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        first.send(SIGSTOP);
        Instance second(environment());
        first.kill();
        QCOMPARE(second.nextLine(), runs);
    }

    void ofManyStartedAtOnceOneRuns_data() { waysOfMeeting(); }
    void ofManyStartedAtOnceOneRuns()
    {
        std::vector<std::unique_ptr<Instance>> instances;
        for (int i = 0; i < 6; ++i)
            instances.push_back(std::make_unique<Instance>(environment()));
        int running = 0;
        for (const auto &instance : instances)
            running += instance->nextLine() == runs ? 1 : 0;
        QCOMPARE(running, 1);
    }

    void otherProgramsActivateItOverTheBus()
    {
        Instance first(m_withBus);
        QCOMPARE(first.nextLine(), runs);
        const QString platformData = QStringLiteral("{'activation-token': <'from-a-dock'>}");
        QCOMPARE(callOverBus(QStringLiteral("Activate"), {platformData}), QStringLiteral("()"));
        QCOMPARE(first.nextLine(), QStringLiteral("reopened from-a-dock"));
        QCOMPARE(callOverBus(QStringLiteral("Open"),
                             {QStringLiteral("['file:///tmp/a.png']"), QStringLiteral("{}")}),
                 QStringLiteral("()"));
        QVERIFY(first.nextLine().startsWith(QStringLiteral("reopened")));
        for (const char *name : {"recent", "undo", "instant", "reveal", "quit"}) {
            const QString action = QString::fromLatin1(name);
            QCOMPARE(callOverBus(QStringLiteral("ActivateAction"),
                                 {action, QStringLiteral("[]"), QStringLiteral("{}")}),
                     QStringLiteral("()"));
            QCOMPARE(first.nextLine(), QStringLiteral("action ") + action);
        }
    }

    void whatIsNoActionOfItIsRefused()
    {
        Instance first(m_withBus);
        QCOMPARE(first.nextLine(), runs);
        QVERIFY(
            callOverBus(QStringLiteral("ActivateAction"),
                        {QStringLiteral("format-disk"), QStringLiteral("[]"), QStringLiteral("{}")})
                .contains(QStringLiteral("InvalidArgs")));
        QVERIFY(first.saysNothingMore());
    }

    void nonsenseOnTheSocketIsOverheard()
    {
        Instance first(m_withoutBus);
        QCOMPARE(first.nextLine(), runs);
        for (const QByteArray &call : {QByteArray("hello\n"), QByteArray("\n"),
                                       QByteArray(200'000, 'x'), QByteArray("[1,2]\n")}) {
            QLocalSocket socket;
            socket.connectToServer(m_runtime->filePath(QStringLiteral("velmora.socket")));
            QVERIFY(socket.waitForConnected(patience));
            socket.write(call);
            QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
            QCOMPARE(socket.readAll(), QByteArray());
        }
        Instance second(m_withoutBus);
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), QStringLiteral("reopened"));
    }

    void theSocketIsTheUsersAlone()
    {
        Instance first(m_withoutBus);
        QCOMPARE(first.nextLine(), runs);
        const QFileInfo socket(m_runtime->filePath(QStringLiteral("velmora.socket")));
        const QFile::Permissions others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QCOMPARE(socket.permissions() & others, QFile::Permissions());
    }

    void aRuntimeFolderThatOthersCanWriteToIsNotUsed()
    {
        QFile::setPermissions(m_runtime->path(),
                              QFile::Permissions(QFile::ReadOwner | QFile::WriteOwner |
                                                 QFile::ExeOwner | QFile::WriteOther));
        Instance first(m_withoutBus);
        QCOMPARE(first.nextLine(), runs);
        QVERIFY(!QFile::exists(m_runtime->filePath(QStringLiteral("velmora.lock"))));
        Instance second(m_withoutBus);
        QCOMPARE(second.nextLine(), anotherRuns);
        QFile::setPermissions(m_runtime->path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

private:
    static void waysOfMeeting()
    {
        QTest::addColumn<bool>("hasBus");
        QTest::newRow("over the bus") << true;
        QTest::newRow("without a bus") << false;
    }

    const QProcessEnvironment &environment() const
    {
        QFETCH(bool, hasBus);
        return hasBus ? m_withBus : m_withoutBus;
    }

    std::optional<QTemporaryDir> m_runtime;
    QProcessEnvironment m_withBus;
    QProcessEnvironment m_withoutBus;
};

VELMORA_EVENTS_TEST(RunningInstanceTest)
#include "RunningInstanceTest.moc"
