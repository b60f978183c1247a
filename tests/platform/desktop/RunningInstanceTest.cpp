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

using namespace Qt::StringLiterals;

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

    /// It leaves the place to others, as the program does that ends.
    void leave() { m_process.write("\n"); }

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
    return run(u"gdbus"_s,
               QStringList{u"call"_s, u"--session"_s, u"--dest"_s, u"app.velmora.Velmora"_s,
                           u"--object-path"_s, u"/app/velmora/Velmora"_s, u"--method"_s,
                           u"org.freedesktop.Application."_s + method} +
                   arguments);
}

const QString runs = u"runs"_s;
const QString anotherRuns = u"another runs"_s;

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
        m_withoutBus.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
        m_withoutBus.insert(u"XDG_RUNTIME_DIR"_s, m_runtime->path());
    }

    void aSecondStartReopensTheFirstAndEnds_data() { waysOfMeeting(); }
    void aSecondStartReopensTheFirstAndEnds()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        Instance second(environment());
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.nextLine(), u"reopened"_s);
        Instance third(environment());
        QCOMPARE(third.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), u"reopened"_s);
    }

    /// A program that ends may take seconds until a clipboard manager has what it has copied.
    void aStartWhileTheFirstIsStillEndingTakesItsPlace_data() { waysOfMeeting(); }
    void aStartWhileTheFirstIsStillEndingTakesItsPlace()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        first.leave();
        QCOMPARE(first.nextLine(), u"has left"_s);
        Instance second(environment());
        QCOMPARE(second.nextLine(), runs);
        Instance third(environment());
        QCOMPARE(third.nextLine(), anotherRuns);
        QCOMPARE(second.nextLine(), u"reopened"_s);
        QVERIFY(first.saysNothingMore());
    }

    void theSecondsTokensReachTheFirst_data() { waysOfMeeting(); }
    void theSecondsTokensReachTheFirst()
    {
        Instance first(environment());
        QCOMPARE(first.nextLine(), runs);
        QProcessEnvironment launched = environment();
        launched.insert(u"XDG_ACTIVATION_TOKEN"_s, u"leave-1"_s);
        Instance second(launched);
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), u"reopened leave-1"_s);
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
        launched.insert(u"DESKTOP_STARTUP_ID"_s, u"panel/\"velmora\"/7-1_TIME123456"_s);
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
        QCOMPARE(second.nextLine(), u"reopened"_s);
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
        QCOMPARE(first.nextLine(), u"reopened"_s);
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
        const QString platformData = u"{'activation-token': <'from-a-dock'>}"_s;
        QCOMPARE(callOverBus(u"Activate"_s, {platformData}), u"()"_s);
        QCOMPARE(first.nextLine(), u"reopened from-a-dock"_s);
        QCOMPARE(callOverBus(u"Open"_s, {u"['file:///tmp/a.png']"_s, u"{}"_s}), u"()"_s);
        QVERIFY(first.nextLine().startsWith(u"reopened"_s));
        for (const char *name : {"recent", "undo", "instant", "reveal", "quit"}) {
            const QString action = QString::fromLatin1(name);
            QCOMPARE(callOverBus(u"ActivateAction"_s, {action, u"[]"_s, u"{}"_s}), u"()"_s);
            QCOMPARE(first.nextLine(), u"action "_s + action);
        }
    }

    void whatIsNoActionOfItIsRefused()
    {
        Instance first(m_withBus);
        QCOMPARE(first.nextLine(), runs);
        QVERIFY(callOverBus(u"ActivateAction"_s, {u"format-disk"_s, u"[]"_s, u"{}"_s})
                    .contains(u"InvalidArgs"_s));
        QVERIFY(first.saysNothingMore());
    }

    void nonsenseOnTheSocketIsOverheard()
    {
        Instance first(m_withoutBus);
        QCOMPARE(first.nextLine(), runs);
        for (const QByteArray &call : {QByteArray("hello\n"), QByteArray("\n"),
                                       QByteArray(200'000, 'x'), QByteArray("[1,2]\n")}) {
            QLocalSocket socket;
            socket.connectToServer(m_runtime->filePath(u"velmora.socket"_s));
            QVERIFY(socket.waitForConnected(patience));
            socket.write(call);
            QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
            QCOMPARE(socket.readAll(), QByteArray());
        }
        Instance second(m_withoutBus);
        QCOMPARE(second.nextLine(), anotherRuns);
        QCOMPARE(first.nextLine(), u"reopened"_s);
    }

    void theSocketIsTheUsersAlone()
    {
        Instance first(m_withoutBus);
        QCOMPARE(first.nextLine(), runs);
        const QFileInfo socket(m_runtime->filePath(u"velmora.socket"_s));
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
        QVERIFY(!QFile::exists(m_runtime->filePath(u"velmora.lock"_s)));
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
