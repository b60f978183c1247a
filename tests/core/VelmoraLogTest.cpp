// SPDX-License-Identifier: MIT
#include "core/VelmoraLog.h"

#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QString programLog = u"/tmp/Velmora.log"_s;
constexpr uid_t nobody = 65534;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void fill(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// The lines without their line feeds. The text after the last line feed counts as another line.
QList<QByteArray> linesOf(const QString &path)
{
    return contentOf(path).split('\n');
}

} // namespace

class VelmoraLogTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"Velmora.log"_s);
    }

    void aLineIsAStampASpaceTheMessageAndALineFeed()
    {
        VelmoraLog::append(m_path, u"watcher start"_s);
        const QRegularExpression line(u"\\A\\d{8}-\\d{6} watcher start\\n\\z"_s);
        QVERIFY(line.match(QString::fromUtf8(contentOf(m_path))).hasMatch());
    }

    void aMissingFileIsCreatedForItsOwnerOnly()
    {
        const mode_t before = ::umask(0);
        VelmoraLog::append(m_path, u"first"_s);
        ::umask(before);
        QCOMPARE(QFileInfo(m_path).permissions(),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
    }

    void laterLinesAreAppendedToWhatStandsThere()
    {
        fill(m_path, "an older run\n");
        VelmoraLog::append(m_path, u"first"_s);
        VelmoraLog::append(m_path, u"second"_s);
        const QList<QByteArray> lines = linesOf(m_path);
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines.at(0), QByteArray("an older run"));
        QVERIFY(lines.at(1).endsWith(" first"));
        QVERIFY(lines.at(2).endsWith(" second"));
        QVERIFY(lines.at(3).isEmpty());
    }

    void nonAsciiTextIsWrittenAsUtf8Unchanged()
    {
        const QString message = u"detected /tmp/Captures d’écran/日本 😀.png"_s;
        VelmoraLog::append(m_path, message);
        QVERIFY(contentOf(m_path).endsWith(QByteArray(" " + message.toUtf8() + "\n")));
    }

    void anEmptyMessageIsTheStampAndOneSpace()
    {
        VelmoraLog::append(m_path, QString());
        const QByteArray content = contentOf(m_path);
        QCOMPARE(content.size(), qsizetype(std::char_traits<char>::length("20260115-093012 \n")));
        QVERIFY(content.endsWith(" \n"));
    }

    void lineFeedsInAMessageStay()
    {
        VelmoraLog::append(m_path, u"one\ntwo"_s);
        QVERIFY(contentOf(m_path).endsWith(" one\ntwo\n"));
    }

    void aPlantedSymbolicLinkIsNotFollowed()
    {
        const QString victim = m_folder->filePath(u"victim"_s);
        fill(victim, "precious");
        QVERIFY(QFile::link(victim, m_path));
        VelmoraLog::append(m_path, u"line"_s);
        QCOMPARE(contentOf(victim), QByteArray("precious"));
        QVERIFY(QFileInfo(m_path).isSymbolicLink());
    }

    void aPlantedLinkToNothingCreatesNothing()
    {
        const QString target = m_folder->filePath(u"target"_s);
        QVERIFY(QFile::link(target, m_path));
        VelmoraLog::append(m_path, u"line"_s);
        QVERIFY(!QFileInfo::exists(target));
    }

    void aPlantedPipeNeitherBlocksNorGetsTheLine()
    {
        const QByteArray path = QFile::encodeName(m_path);
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        VelmoraLog::append(m_path, u"nobody reads"_s);

        const int reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader >= 0);
        VelmoraLog::append(m_path, u"somebody reads"_s);
        char byte = 0;
        QCOMPARE(::read(reader, &byte, 1), ssize_t(0));
        ::close(reader);
    }

    void aFolderInTheWayLosesTheLineOnly()
    {
        QVERIFY(QDir().mkdir(m_path));
        VelmoraLog::append(m_path, u"line"_s);
        QVERIFY(QDir(m_path).isEmpty());
    }

    void aMissingFolderLosesTheLineOnly()
    {
        const QString path = m_folder->filePath(u"missing/Velmora.log"_s);
        VelmoraLog::append(path, u"line"_s);
        QVERIFY(!QFileInfo::exists(path));
    }

    void anUnwritableFileStaysAsItIs()
    {
        fill(m_path, "kept\n");
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::ReadOther));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner |
                                                            QFile::ExeOwner | QFile::ReadOther |
                                                            QFile::ExeOther));
        // Permissions do not restrict root, so root writes this line as another user.
        const uid_t user = ::geteuid();
        QVERIFY(user != 0 || ::seteuid(nobody) == 0);
        VelmoraLog::append(m_path, u"line"_s);
        QCOMPARE(::seteuid(user), 0);
        QCOMPARE(contentOf(m_path), QByteArray("kept\n"));
    }

    void aWriteThatTheSystemRefusesLosesTheLineOnly()
    {
        const QByteArray before("kept\n");
        fill(m_path, before);
        rlimit old = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &old), 0);
        const rlimit full = {static_cast<rlim_t>(before.size()), old.rlim_max};
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
        VelmoraLog::append(m_path, u"line"_s);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &old), 0);
        std::signal(SIGXFSZ, oldHandler);
        QCOMPARE(contentOf(m_path), before);
        VelmoraLog::append(m_path, u"next"_s);
        QVERIFY(contentOf(m_path).endsWith(" next\n"));
    }

    void linesOfManyThreadsAllArriveWhole()
    {
        constexpr int threadCount = 4;
        constexpr int linesEach = 50;
        std::vector<std::thread> threads;
        for (int number = 0; number < threadCount; ++number) {
            threads.emplace_back([this, number] {
                for (int line = 0; line < linesEach; ++line)
                    VelmoraLog::append(m_path, u"thread %1 end"_s.arg(number));
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        const QString lines = QString::fromUtf8(contentOf(m_path));
        static const QRegularExpression whole(u"^\\d{8}-\\d{6} thread \\d end$"_s,
                                              QRegularExpression::MultilineOption);
        QCOMPARE(lines.count(whole), threadCount * linesEach);
    }

    void theProgramWritesToItsFixedPath()
    {
        const QString message = u"detected %1/shot.png"_s.arg(m_folder->path());
        VelmoraLog::write(message);
        QVERIFY(VelmoraLog::waitUntilWritten(10s));
        QVERIFY(contentOf(programLog).contains(QByteArray(" " + message.toUtf8() + "\n")));
    }

    void aSlowDiskHoldsNobodyUpAndKeepsTheOrder()
    {
        constexpr int lines = 20;
        SlowDisk::slow({"/tmp/Velmora.log"}, 30ms);
        SlowDisk::startCounting();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < lines; ++i)
            VelmoraLog::write(m_folder->path() + u" line %1"_s.arg(i));
        QVERIFY2(timer.elapsed() < 500, QByteArray::number(timer.elapsed()).constData());
        QCOMPARE(SlowDisk::mainThreadCalls(), QByteArrayList());
        QVERIFY(VelmoraLog::waitUntilWritten(30s));
        SlowDisk::fast();
        QStringList own;
        for (const QByteArray &line : linesOf(programLog)) {
            if (line.contains(m_folder->path().toUtf8()))
                own << QString::fromUtf8(line).section(u' ', -1);
        }
        QCOMPARE(own.size(), lines);
        for (int i = 0; i < lines; ++i)
            QCOMPARE(own.at(i), QString::number(i));
    }

    void theEndOfTheProgramWritesWhatIsStillWaiting()
    {
        const QString mark = m_folder->path() + u" last words"_s;
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {u"say"_s, mark});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(contentOf(programLog).contains(QByteArray(mark.toUtf8() + " 9\n")));
    }
};

VELMORA_EVENTS_TEST(VelmoraLogTest)

/// A program that exits right after writing to the log.
static const TestProgram::Entry saysSomething("say", [](int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    const QString words = QCoreApplication::arguments().value(1);
    SlowDisk::slow({"/tmp/Velmora.log"}, 5ms);
    for (int i = 0; i < 10; ++i)
        VelmoraLog::write(words + u" %1"_s.arg(i));
    return 0;
});

#include "VelmoraLogTest.moc"
