// SPDX-License-Identifier: MIT
#include "naming/ScreenshotNamer.h"

#include "imaging/ScreenshotImages.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace TestPictures;

namespace
{

constexpr int patience = 20'000; // milliseconds

} // namespace

class SuggestFilenameTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileWriters> m_writers = makeFileWriters();
    std::unique_ptr<ScreenshotImages> m_images;
    std::unique_ptr<FakeTextRecognizer> m_recognizer;
    std::unique_ptr<ScreenshotNamer> m_namer;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }

    /// A screenshot that is identified by its width.
    QUrl screenshot(int width) const
    {
        const QString name = u"%1.png"_s.arg(width);
        const QByteArray png = encoded(fourFields({width, 10}), u"png"_s);
        return write(path(name), png) ? url(name) : QUrl();
    }

    template <typename Condition>
    static bool soon(Condition condition)
    {
        return QTest::qWaitFor(condition, patience);
    }

    /// An empty string if no name arrives.
    QString suggested(const QUrl &file, const char *appName)
    {
        const auto name = m_namer->suggestFilename(file, QString::fromUtf8(appName));
        return soon([&] { return name.isFinished(); }) && name.resultCount() == 1 ? name.result()
                                                                                  : QString();
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_images = std::make_unique<ScreenshotImages>(*m_writers);
        m_recognizer = std::make_unique<FakeTextRecognizer>();
        m_namer = std::make_unique<ScreenshotNamer>(*m_recognizer, *m_images);
    }

    void cleanup()
    {
        m_namer.reset();
        m_recognizer.reset();
        m_images.reset();
        m_folder.reset();
    }

    void theRecogniserIsMadeReadyBeforeTheFirstScreenshot()
    {
        QVERIFY(soon([&] { return m_recognizer->isWarm.load(); }));
    }

    void theLinesAreReadAsOneText()
    {
        m_recognizer->setLines({u"Pull Request #1423"_s, u"Review comments"_s});
        QCOMPARE(suggested(screenshot(20), "Google Chrome"),
                 u"chrome-pull-request-review-comments.png"_s);
    }

    void readingStopsWhenTheNameIsComplete()
    {
        QStringList lines;
        for (int number = 0; number < 100; ++number)
            lines.append(u"word%1"_s.arg(number));
        m_recognizer->setLines(lines);
        QCOMPARE(suggested(screenshot(20), "Safari"), u"safari-word0-word1-word2-word3.png"_s);
        QCOMPARE(m_recognizer->linesGiven.load(), 4);
    }

    void aPictureWithoutTextIsNamedAfterTheApplication()
    {
        QCOMPARE(suggested(screenshot(20), "Preview"), u"preview.png"_s);
        QVERIFY(suggested(screenshot(20), "").startsWith("screenshot-screen-"_L1));
    }

    void aFileThatIsNoPictureIsNamedWithoutTheRecogniser()
    {
        m_recognizer->setLines({u"never read"_s});
        QVERIFY(write(path(u"text.png"_s), "I am a text."));
        QCOMPARE(suggested(url(u"text.png"_s), "Safari"), u"safari.png"_s);
        QCOMPARE(suggested(url(u"missing.jpg"_s), "Safari"), u"safari.jpg"_s);
        QCOMPARE(suggested(QUrl::fromLocalFile(u"/dev/zero"_s), "Safari"), u"safari"_s);
        QVERIFY(m_recognizer->readings().isEmpty());
    }

    void whatIsNotTheScreenshotsOwnIsLeftOut()
    {
        m_recognizer->setLines({u"Budget"_s});
        const BlindAreas blind = [](QSize picture) {
            return QList<QRect>{QRect(QPoint(), picture / 2)};
        };
        const auto name = m_namer->suggestFilename(screenshot(20), QString(), blind);
        QVERIFY(soon([&] { return name.isFinished(); }));
        QCOMPARE(name.result(), u"budget.png"_s);
        QCOMPARE(m_recognizer->readings().last().leftOut, QList<QRect>{QRect(0, 0, 10, 5)});
        QVERIFY(!suggested(screenshot(21), "").isEmpty());
        QCOMPARE(m_recognizer->readings().last().leftOut, QList<QRect>());
    }

    void theFileMayBeRenamedAtOnce()
    {
        m_recognizer->setLines({u"Budget"_s});
        const QUrl file = screenshot(20);
        const auto name = m_namer->suggestFilename(file, QString());
        QVERIFY(QFile::rename(file.toLocalFile(), path(u"other.png"_s)));
        QVERIFY(soon([&] { return name.isFinished(); }));
        QCOMPARE(name.result(), u"budget.png"_s);
    }

    void aFileThatIsBeingWrittenIsReadWhenItIsComplete()
    {
        m_recognizer->setLines({u"Budget"_s});
        const QByteArray png = encoded(fourFields({77, 10}), u"png"_s);
        QFile file(path(u"slow.png"_s));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        file.write(png.left(png.size() / 2));
        const auto slow = m_namer->suggestFilename(url(u"slow.png"_s), QString());
        // Others do not have to wait for it, even on a single core.
        for (int width = 20; width < 30; ++width)
            QCOMPARE(suggested(screenshot(width), ""), u"budget.png"_s);
        QVERIFY(!slow.isFinished());
        QVERIFY(soon([&] { return m_recognizer->running() == 0; }));
        QCOMPARE(m_recognizer->readings().size(), 10);
        file.write(png.mid(png.size() / 2));
        file.close();
        QVERIFY(soon([&] { return slow.isFinished(); }));
        QCOMPARE(slow.result(), u"budget.png"_s);
        QCOMPARE(m_recognizer->readings().last().width, 77);
    }

    void theNewestScreenshotIsReadFirst()
    {
        m_recognizer->hold();
        const int cores = QThread::idealThreadCount();
        QList<QFuture<QString>> names;
        for (int width = 1; width <= cores; ++width)
            names.append(m_namer->suggestFilename(screenshot(width), QString()));
        QVERIFY(soon([&] { return m_recognizer->running() == cores; }));
        for (int width = 101; width <= 110; ++width)
            names.append(m_namer->suggestFilename(screenshot(width), QString()));
        for (int width = 101; width <= 110; ++width) {
            const auto complete = m_images->completion(url(u"%1.png"_s.arg(width)));
            QVERIFY(soon([&] { return complete.isFinished(); }));
        }
        for (int number = 0; number < 10; ++number) {
            m_recognizer->letOneRead();
            const int read = cores + number + 1;
            QVERIFY(soon([&] { return m_recognizer->readings().size() == read; }));
            QCOMPARE(m_recognizer->readings().last().width, 110 - number);
        }
        m_recognizer->letRead();
        for (const QFuture<QString> &name : std::as_const(names))
            QVERIFY(soon([&] { return name.isFinished(); }));
        QCOMPARE(m_recognizer->mostAtOnce(), cores);
    }

    void readingGivesWayToWhatAPersonWaitsFor()
    {
        std::atomic_int niceness = 0;
        std::atomic<QThread *> thread = nullptr;
        m_namer.reset();
        m_recognizer = std::make_unique<FakeTextRecognizer>([&](const QImage &) {
            niceness = ::getpriority(PRIO_PROCESS, 0);
            thread = QThread::currentThread();
            return QStringList{u"Budget"_s};
        });
        m_namer = std::make_unique<ScreenshotNamer>(*m_recognizer, *m_images);
        QCOMPARE(suggested(screenshot(20), ""), u"budget.png"_s);
        QVERIFY(niceness > ::getpriority(PRIO_PROCESS, 0));
        QVERIFY(thread != QThread::currentThread());
    }

    void aCancelledSuggestionEndsItsReading()
    {
        m_recognizer->hold();
        auto name = m_namer->suggestFilename(screenshot(20), QString());
        QVERIFY(soon([&] { return m_recognizer->running() == 1; }));
        name.cancel();
        QVERIFY(soon([&] { return m_recognizer->running() == 0; }));
        QCOMPARE(name.resultCount(), 0);
    }

    void destructionCancelsEverythingWithinASecond()
    {
        m_recognizer->hold();
        QFile unfinished(path(u"unfinished.png"_s));
        QVERIFY(unfinished.open(QFile::WriteOnly));
        QList<QFuture<QString>> names = {
            m_namer->suggestFilename(url(u"unfinished.png"_s), QString())};
        for (int width = 1; width <= 50; ++width)
            names.append(m_namer->suggestFilename(screenshot(width), QString()));
        QVERIFY(soon([&] { return m_recognizer->running() > 0; }));
        QElapsedTimer timer;
        timer.start();
        m_namer.reset();
        QVERIFY(timer.elapsed() < 1000);
        QCOMPARE(m_recognizer->running(), 0);
        for (const QFuture<QString> &name : std::as_const(names)) {
            QVERIFY(name.isFinished());
            QVERIFY(name.isCanceled());
        }
    }
};

VELMORA_EVENTS_TEST(SuggestFilenameTest)
#include "SuggestFilenameTest.moc"
