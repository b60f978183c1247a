// SPDX-License-Identifier: MIT
#include "platform/FileWriters.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

using Answer = FileWriters::Answer;

class FileWritersTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<FileWriters> m_writers = makeFileWriters();
    QString m_path;
    QFile m_reader;

private Q_SLOTS:
    void init()
    {
        m_path = m_folder.filePath(u"shot.png"_s);
        QFile file(m_path);
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("picture");
        file.close();
        m_reader.setFileName(m_path);
        QVERIFY(m_reader.open(QFile::ReadOnly));
    }

    void cleanup() { m_reader.close(); }

    void aFileThatAllWritersHaveClosedHasNone()
    {
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
    }

    void otherReadersDoNotCount()
    {
        QFile other(m_path);
        QVERIFY(other.open(QFile::ReadOnly));
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
    }

    void eachWriterCountsUntilTheLastHasClosed()
    {
        QFile first(m_path);
        QFile second(m_path);
        QVERIFY(first.open(QFile::Append));
        QVERIFY(second.open(QFile::ReadWrite));
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::Some);
        first.close();
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::Some);
        second.close();
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
    }

    void aWriterInAnotherProcessCounts()
    {
        QProcess writer;
        writer.start(u"sh"_s,
                     {u"-c"_s, u"exec >>\"$1\"; echo ready >&2; read x"_s, u"sh"_s, m_path});
        writer.setReadChannel(QProcess::StandardError);
        QVERIFY(writer.waitForReadyRead(10'000));
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::Some);
        writer.write("\n");
        QVERIFY(writer.waitForFinished(10'000));
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
    }

    void aRenamedFileIsStillAskedAbout()
    {
        QFile writer(m_path);
        QVERIFY(writer.open(QFile::Append));
        QVERIFY(QFile::rename(m_path, m_folder.filePath(u"renamed.png"_s)));
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::Some);
        writer.close();
        QCOMPARE(m_writers->writersOf(m_reader.handle()), Answer::None);
        QVERIFY(QFile::remove(m_folder.filePath(u"renamed.png"_s)));
    }

    void writersThatComeWhileWeAskSucceedAndDoNotKillUs()
    {
        std::atomic_bool done = false;
        int opened = 0;
        int refused = 0;
        std::thread writer([&] {
            while (!done) {
                QFile file(m_path);
                ++(file.open(QFile::Append) ? opened : refused);
            }
        });
        int none = 0;
        int some = 0;
        QDeadlineTimer deadline(20'000);
        while ((none < 500 || some < 50) && !deadline.hasExpired())
            ++(m_writers->writersOf(m_reader.handle()) == Answer::None ? none : some);
        done = true;
        writer.join();
        QVERIFY(none >= 500);
        QVERIFY(some >= 50);
        QVERIFY(opened > 0);
        QCOMPARE(refused, 0);
    }

    void whereWeMayNotAskTheAnswerIsUnknown()
    {
        QCOMPARE(m_writers->writersOf(-1), Answer::Unknown);
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        QCOMPARE(m_writers->writersOf(ends[0]), Answer::Unknown);
        ::close(ends[0]);
        ::close(ends[1]);
    }

    void anotherUsersFileIsUnknown()
    {
        if (::geteuid() != 0)
            QSKIP("only root can act as somebody else");
        const uid_t nobody = 65534;
        QCOMPARE(::seteuid(nobody), 0);
        const Answer answer = m_writers->writersOf(m_reader.handle());
        QCOMPARE(::seteuid(0), 0);
        QCOMPARE(answer, Answer::Unknown);
    }
};

VELMORA_EVENTS_TEST(FileWritersTest)
#include "FileWritersTest.moc"
