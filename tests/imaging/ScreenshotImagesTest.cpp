// SPDX-License-Identifier: MIT
#include "imaging/ScreenshotImages.h"

#include "imaging/HeldScreenshot.h"
#include "platform/FileWriters.h"
#include "tests/fakes/CountedFileWriters.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFutureWatcher>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

using namespace TestPictures;

namespace
{

constexpr int patience = 20'000; // milliseconds

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/dev/fd")).entryList(QDir::Files | QDir::System).size();
}

} // namespace

class ScreenshotImagesTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CountedFileWriters> m_writers;
    std::unique_ptr<ScreenshotImages> m_images;
    const QImage m_picture = fourFields({640, 400});
    const QByteArray m_png = encoded(m_picture, QStringLiteral("png"));

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }

    bool lookedAgain(int times) const
    {
        const int before = m_writers->asked;
        return QTest::qWaitFor([&] { return m_writers->asked >= before + times; }, patience);
    }

    /// The number of open descriptors, once all threads are running.
    qsizetype descriptorsAtWork() const
    {
        return write(path(QStringLiteral("first.png")), m_png) &&
                       isFinished(m_images->thumbnail(url(QStringLiteral("first.png")), {9, 9}))
                   ? openDescriptors()
                   : -1;
    }

    static bool isFinished(const QFuture<QImage> &future)
    {
        return QTest::qWaitFor([&] { return future.isFinished(); }, patience);
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_writers = std::make_unique<CountedFileWriters>();
        m_images = std::make_unique<ScreenshotImages>(*m_writers);
    }

    void cleanup()
    {
        m_images.reset();
        m_writers.reset();
        m_folder.reset();
    }

    void aCompletePictureIsRead_data()
    {
        QTest::addColumn<QString>("format");
        for (const char *format : {"png", "jpeg", "tiff", "heic"})
            QTest::newRow(format) << QString::fromLatin1(format);
    }
    void aCompletePictureIsRead()
    {
        QFETCH(QString, format);
        QVERIFY(write(path(QStringLiteral("a.png")), encoded(m_picture, format)));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aThumbnailFitsIntoItsBoundsAndKeepsItsProportions()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        const auto small = m_images->thumbnail(url(QStringLiteral("a.png")), {64, 64});
        const auto same = m_images->thumbnail(url(QStringLiteral("a.png")), {2000, 2000});
        const auto none = m_images->thumbnail(url(QStringLiteral("a.png")), {0, 0});
        QVERIFY(isFinished(small) && isFinished(same) && isFinished(none));
        QCOMPARE(small.result().size(), QSize(64, 40));
        QVERIFY(lookAlike(small.result(), fourFields({64, 40})));
        QCOMPARE(same.result().size(), m_picture.size());
        QVERIFY(none.result().width() <= 1);
    }

    void allWhoAskShareTheSamePixels()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        const auto first = m_images->image(url(QStringLiteral("a.png")));
        const auto second = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(isFinished(first) && isFinished(second));
        QVERIFY(QFile::rename(path(QStringLiteral("a.png")), path(QStringLiteral("b.png"))));
        const auto third = m_images->image(url(QStringLiteral("b.png")));
        QVERIFY(isFinished(third));
        QCOMPARE(second.result().constBits(), first.result().constBits());
        QCOMPARE(third.result().constBits(), first.result().constBits());
    }

    void aFileThatHasChangedIsReadAgain()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        QVERIFY(isFinished(m_images->image(url(QStringLiteral("a.png")))));
        const QImage other = fourFields({320, 200});
        QVERIFY(write(path(QStringLiteral("a.png")), encoded(other, QStringLiteral("png"))));
        const auto again = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(isFinished(again));
        QVERIFY(lookAlike(again.result(), other));
    }

    void nothingIsReadBeforeTheWriterHasClosedTheFile()
    {
        QFile file(path(QStringLiteral("a.png")));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        const auto thumbnail = m_images->thumbnail(url(QStringLiteral("a.png")), {64, 40});
        const auto completion = m_images->completion(url(QStringLiteral("a.png")));
        QVERIFY(lookedAgain(3));
        file.write(m_png.left(m_png.size() / 2));
        QVERIFY(lookedAgain(3));
        file.write(m_png.mid(m_png.size() / 2).chopped(1));
        QVERIFY(lookedAgain(6));
        QVERIFY(!image.isFinished() && !thumbnail.isFinished() && !completion.isFinished());
        file.write(m_png.last(1));
        file.close();
        QVERIFY(isFinished(image) && isFinished(thumbnail));
        QVERIFY(QTest::qWaitFor([&] { return completion.isFinished(); }, patience));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(lookAlike(thumbnail.result(), fourFields({64, 40})));
    }

    void aPictureThatIsWrittenWholeIsReadSoonThoughItsWriterKeepsItOpen_data()
    {
        aCompletePictureIsRead_data();
    }
    void aPictureThatIsWrittenWholeIsReadSoonThoughItsWriterKeepsItOpen()
    {
        QFETCH(QString, format);
        const QByteArray bytes = encoded(m_picture, format);
        QVERIFY(isFinished(m_images->image(url(QStringLiteral("missing.png")))));
        qint64 fastest = patience;
        for (int attempt = 0; attempt < 5; ++attempt) {
            const QString name = QString::number(attempt);
            QFile file(path(name));
            QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
            file.write(bytes.first(bytes.size() - 3));
            const auto image = m_images->image(url(name));
            QVERIFY(!QTest::qWaitFor([&] { return image.isFinished(); }, 500));
            file.write(bytes.last(3));
            QElapsedTimer timer;
            timer.start();
            QVERIFY(isFinished(image));
            QVERIFY(timer.elapsed() >= 190);
            fastest = std::min(fastest, timer.elapsed());
            QVERIFY(lookAlike(image.result(), m_picture));
        }
        QVERIFY2(fastest < 400, qPrintable(QString::number(fastest)));
    }

    void aSlowToolInAnotherProcessIsWaitedFor()
    {
        const QString name = path(QStringLiteral("a.png"));
        QProcess tool;
        tool.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("exec cat >\"$1\""),
                                          QStringLiteral("sh"), name});
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(name); }, patience));
        const auto image = m_images->image(QUrl::fromLocalFile(name));
        constexpr int pieces = 5;
        for (int piece = 0; piece < pieces; ++piece) {
            QVERIFY(lookedAgain(2));
            QVERIFY(!image.isFinished());
            const qsizetype begin = m_png.size() * piece / pieces;
            const qsizetype end = m_png.size() * (piece + 1) / pieces;
            tool.write(m_png.mid(begin, end - begin));
            QVERIFY(QTest::qWaitFor([&] { return QFile(name).size() == end; }, patience));
        }
        tool.closeWriteChannel();
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, patience));
    }

    void whereNobodyTellsAHalfWrittenFileIsWaitedForAllTheSame()
    {
        m_writers->unknown = true;
        QFile file(path(QStringLiteral("a.png")));
        QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
        file.write(m_png.left(m_png.size() / 2));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(lookedAgain(8));
        QVERIFY(!image.isFinished());
        file.write(m_png.mid(m_png.size() / 2));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void anEmptyFileThatIsFilledLaterIsWaitedFor()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), {}));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(lookedAgain(3));
        QVERIFY(!image.isFinished());
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aBrokenFileIsNotWaitedForLong()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png.chopped(100)));
        QElapsedTimer timer;
        timer.start();
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(isFinished(image));
        QVERIFY(image.result().isNull());
        QVERIFY(timer.elapsed() < 8000);
        timer.start();
        const auto again = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(isFinished(again));
        QVERIFY(timer.elapsed() < 1500);
    }

    void aFileMayBeRenamedAsSoonAsItHasBeenAskedFor()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(QFile::rename(path(QStringLiteral("a.png")), path(QStringLiteral("b.png"))));
        QVERIFY(write(path(QStringLiteral("a.png")), "an impostor"));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aFileMayBeDeletedAsSoonAsItHasBeenAskedFor()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(QFile::remove(path(QStringLiteral("a.png"))));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aFileThatIsWrittenAnewInItsPlaceIsReadAnew_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("not complete before") << m_png.first(m_png.size() / 2);
        QTest::newRow("another picture before")
            << encoded(fourFields({64, 64}), QStringLiteral("png"));
        QTest::newRow("empty before") << QByteArray();
    }
    void aFileThatIsWrittenAnewInItsPlaceIsReadAnew()
    {
        QFETCH(QByteArray, before);
        QVERIFY(write(path(QStringLiteral("a.png")), before));
        const auto held = m_images->hold(url(QStringLiteral("a.png")));
        QVERIFY(write(path(QStringLiteral("new")), m_png));
        QFile writer(path(QStringLiteral("a.png")));
        QVERIFY(writer.open(QFile::ReadWrite));
        const auto image = m_images->image(held);
        QVERIFY(lookedAgain(3));
        // The way an editor writes: a new file beside it, then in its place.
        QCOMPARE(std::rename(QFile::encodeName(path(QStringLiteral("new"))).constData(),
                             QFile::encodeName(path(QStringLiteral("a.png"))).constData()),
                 0);
        writer.close();
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
        QVERIFY(held->currentIdentity()->current().sameFile(
            *fileIdentity(path(QStringLiteral("a.png")))));
        QVERIFY(!held->identity().sameFile(held->currentIdentity()->current()));
    }

    void largePicturesWaitUntilOthersAreLetGo()
    {
        // Each takes 80 MB: there is room for two.
        QImage large(5000, 4000, QImage::Format_Grayscale8);
        large.fill(Qt::gray);
        const QByteArray png = encoded(large, QStringLiteral("png"));
        large = {};
        QList<QFuture<QImage>> images;
        for (int number = 0; number < 5; ++number) {
            const QString name = QString::number(number);
            QVERIFY(write(path(name), png));
            images.append(m_images->image(url(name)));
        }
        const auto finished = [&] {
            return std::count_if(images.cbegin(), images.cend(),
                                 [](const auto &image) { return image.isFinished(); });
        };
        QVERIFY(QTest::qWaitFor([&] { return finished() == 2; }, patience));
        QVERIFY(!QTest::qWaitFor([&] { return finished() > 2; }, 500));
        while (!images.isEmpty()) {
            QVERIFY(QTest::qWaitFor([&] { return finished() > 0; }, patience));
            images.removeIf([](const auto &image) {
                return image.isFinished() && image.result().size() == QSize(5000, 4000);
            });
        }
    }

    void manyHeldFilesAreFoundAgainUnderTheirNewNamesWithFewDescriptors()
    {
        constexpr int files = 300;
        const qsizetype before = descriptorsAtWork();
        QList<ScreenshotImages::Held> held;
        for (int number = 1; number <= files; ++number) {
            const QString name = QString::number(number);
            QVERIFY(write(path(name), encoded(fourFields({number, 10}), QStringLiteral("png"))));
            held.append(m_images->hold(url(name)));
            QVERIFY(QFile::rename(path(name), path(QStringLiteral("renamed ") + name)));
        }
        QVERIFY(openDescriptors() - before <= 150);
        for (int number : {1, files / 2, files}) {
            const auto image = m_images->image(held.at(number - 1));
            QVERIFY(isFinished(image));
            QCOMPARE(image.result().size(), QSize(number, 10));
        }
        QVERIFY(QFile::remove(path(QStringLiteral("renamed 300"))));
        QVERIFY(write(path(QStringLiteral("300")), m_png));
        held.removeLast();
        QVERIFY(QFile::remove(path(QStringLiteral("renamed 299"))));
        const auto gone = m_images->image(held.last());
        QVERIFY(isFinished(gone));
        QVERIFY(gone.result().isNull());
        held.clear();
        QVERIFY(QTest::qWaitFor([&] { return openDescriptors() <= before; }, patience));
    }

    void whatIsNoReadableFileGivesANullImageAtOnce()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder.png")));
        const QString pipe = path(QStringLiteral("pipe.png"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(QFile::link(path(QStringLiteral("nowhere")), path(QStringLiteral("link.png"))));
        const QList<QUrl> files = {url(QStringLiteral("folder.png")), QUrl::fromLocalFile(pipe),
                                   url(QStringLiteral("link.png")),
                                   url(QStringLiteral("missing.png")), QUrl()};
        QElapsedTimer timer;
        timer.start();
        for (const QUrl &file : files) {
            const auto image = m_images->image(file);
            QVERIFY(isFinished(image));
            QVERIFY(image.result().isNull());
            const auto thumbnail = m_images->thumbnail(file, {10, 10});
            QVERIFY(isFinished(thumbnail));
            QVERIFY(thumbnail.result().isNull());
        }
        QVERIFY(timer.elapsed() < 5000);
    }

    void aFileThatMayNotBeReadGivesANullImage()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(path(QStringLiteral("a.png")), {}));
        const uid_t user = ::geteuid();
        const uid_t nobody = 65534;
        if (user == 0)
            QCOMPARE(::seteuid(nobody), 0);
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        const bool finished = isFinished(image);
        QCOMPARE(::seteuid(user), 0);
        QVERIFY(finished);
        QVERIFY(image.result().isNull());
    }

    void destructionEndsWhatWaitsWithNullImages()
    {
        QFile file(path(QStringLiteral("a.png")));
        QVERIFY(file.open(QFile::WriteOnly));
        const auto image = m_images->image(url(QStringLiteral("a.png")));
        const auto thumbnail = m_images->thumbnail(url(QStringLiteral("a.png")), {9, 9});
        auto completion = m_images->completion(url(QStringLiteral("a.png")));
        QVERIFY(lookedAgain(2));
        m_images.reset();
        QVERIFY(image.isFinished() && thumbnail.isFinished() && completion.isFinished());
        QVERIFY(image.result().isNull());
        QVERIFY(thumbnail.result().isNull());
        QVERIFY(!completion.isCanceled());
    }

    void destructionRightAfterManyRequestsAnswersThemAll()
    {
        QVERIFY(write(path(QStringLiteral("a.png")), m_png));
        QList<QFuture<QImage>> futures;
        for (int number = 0; number < 50; ++number)
            futures.append(m_images->thumbnail(url(QStringLiteral("a.png")), {number, number}));
        m_images.reset();
        for (const QFuture<QImage> &future : std::as_const(futures)) {
            QVERIFY(future.isFinished());
            QCOMPARE(future.resultCount(), 1);
        }
    }

    void aCancelledRequestLetsGoOfTheFile()
    {
        const qsizetype idle = descriptorsAtWork();
        QFile file(path(QStringLiteral("a.png")));
        QVERIFY(file.open(QFile::WriteOnly));
        const qsizetype before = openDescriptors();
        QCOMPARE(before, idle + 1);
        auto image = m_images->image(url(QStringLiteral("a.png")));
        QVERIFY(lookedAgain(2));
        QVERIFY(openDescriptors() > before);
        image.cancel();
        QVERIFY(QTest::qWaitFor([&] { return openDescriptors() == before; }, patience));
    }
};

VELMORA_EVENTS_TEST(ScreenshotImagesTest)
#include "ScreenshotImagesTest.moc"
