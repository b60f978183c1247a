// SPDX-License-Identifier: MIT
#include "imaging/ScreenshotImages.h"

#include "tests/imaging/ScreenshotImagesFixture.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TestPictures;

namespace
{

qsizetype openDescriptors()
{
    return QDir(u"/dev/fd"_s).entryList(QDir::Files | QDir::System).size();
}

} // namespace

/// What is read of complete files, and what is held meanwhile.
class ScreenshotImagesTest : public QObject, private ScreenshotImagesFixture
{
    Q_OBJECT

    /// The number of open descriptors, once all threads are running.
    qsizetype descriptorsAtWork() const
    {
        return write(path(u"first.png"_s), m_png) &&
                       isFinished(m_images->thumbnail(url(u"first.png"_s), {9, 9}))
                   ? openDescriptors()
                   : -1;
    }

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aCompletePictureIsRead_data() { addFormats(); }
    void aCompletePictureIsRead()
    {
        QFETCH(QString, format);
        QVERIFY(write(path(u"a.png"_s), encoded(m_picture, format)));
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aThumbnailFitsIntoItsBoundsAndKeepsItsProportions()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        const auto small = m_images->thumbnail(url(u"a.png"_s), {64, 64});
        const auto same = m_images->thumbnail(url(u"a.png"_s), {2000, 2000});
        const auto none = m_images->thumbnail(url(u"a.png"_s), {0, 0});
        QVERIFY(isFinished(small) && isFinished(same) && isFinished(none));
        QCOMPARE(small.result().size(), QSize(64, 40));
        QVERIFY(lookAlike(small.result(), fourFields({64, 40})));
        QCOMPARE(same.result().size(), m_picture.size());
        QVERIFY(none.result().width() <= 1);
    }

    void allWhoAskShareTheSamePixels()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        const auto first = m_images->image(url(u"a.png"_s));
        const auto second = m_images->image(url(u"a.png"_s));
        QVERIFY(isFinished(first) && isFinished(second));
        QVERIFY(QFile::rename(path(u"a.png"_s), path(u"b.png"_s)));
        const auto third = m_images->image(url(u"b.png"_s));
        QVERIFY(isFinished(third));
        QCOMPARE(second.result().constBits(), first.result().constBits());
        QCOMPARE(third.result().constBits(), first.result().constBits());
    }

    void aFileThatHasChangedIsReadAgain()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        QVERIFY(isFinished(m_images->image(url(u"a.png"_s))));
        const QImage other = fourFields({320, 200});
        QVERIFY(write(path(u"a.png"_s), encoded(other, u"png"_s)));
        const auto again = m_images->image(url(u"a.png"_s));
        QVERIFY(isFinished(again));
        QVERIFY(lookAlike(again.result(), other));
    }

    void aFileMayBeRenamedAsSoonAsItHasBeenAskedFor()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(QFile::rename(path(u"a.png"_s), path(u"b.png"_s)));
        QVERIFY(write(path(u"a.png"_s), "an impostor"));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void aFileMayBeDeletedAsSoonAsItHasBeenAskedFor()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        const auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(QFile::remove(path(u"a.png"_s)));
        QVERIFY(isFinished(image));
        QVERIFY(lookAlike(image.result(), m_picture));
    }

    void largePicturesWaitUntilOthersAreLetGo()
    {
        // Each takes 80 MB: there is room for two.
        QImage large(5000, 4000, QImage::Format_Grayscale8);
        large.fill(Qt::gray);
        const QByteArray png = encoded(large, u"png"_s);
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
            QVERIFY(write(path(name), encoded(fourFields({number, 10}), u"png"_s)));
            held.append(m_images->hold(url(name)));
            QVERIFY(QFile::rename(path(name), path(u"renamed "_s + name)));
        }
        QVERIFY(openDescriptors() - before <= 150);
        for (int number : {1, files / 2, files}) {
            const auto image = m_images->image(held.at(number - 1));
            QVERIFY(isFinished(image));
            QCOMPARE(image.result().size(), QSize(number, 10));
        }
        QVERIFY(QFile::remove(path(u"renamed 300"_s)));
        QVERIFY(write(path(u"300"_s), m_png));
        held.removeLast();
        QVERIFY(QFile::remove(path(u"renamed 299"_s)));
        const auto gone = m_images->image(held.last());
        QVERIFY(isFinished(gone));
        QVERIFY(gone.result().isNull());
        held.clear();
        QVERIFY(QTest::qWaitFor([&] { return openDescriptors() <= before; }, patience));
    }

    void whatIsNoReadableFileGivesANullImageAtOnce()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder.png"_s));
        const QString pipe = path(u"pipe.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(QFile::link(path(u"nowhere"_s), path(u"link.png"_s)));
        const QList<QUrl> files = {url(u"folder.png"_s), QUrl::fromLocalFile(pipe),
                                   url(u"link.png"_s), url(u"missing.png"_s), QUrl()};
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
        QVERIFY(write(path(u"a.png"_s), m_png));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(path(u"a.png"_s), {}));
        const uid_t user = ::geteuid();
        const uid_t nobody = 65534;
        if (user == 0)
            QCOMPARE(::seteuid(nobody), 0);
        const auto image = m_images->image(url(u"a.png"_s));
        const bool finished = isFinished(image);
        QCOMPARE(::seteuid(user), 0);
        QVERIFY(finished);
        QVERIFY(image.result().isNull());
    }

    void destructionRightAfterManyRequestsAnswersThemAll()
    {
        QVERIFY(write(path(u"a.png"_s), m_png));
        QList<QFuture<QImage>> futures;
        for (int number = 0; number < 50; ++number)
            futures.append(m_images->thumbnail(url(u"a.png"_s), {number, number}));
        m_images.reset();
        for (const QFuture<QImage> &future : std::as_const(futures)) {
            QVERIFY(future.isFinished());
            QCOMPARE(future.resultCount(), 1);
        }
    }

    void destructionEndsWhatWaitsWithNullImages()
    {
        QFile file(path(u"a.png"_s));
        QVERIFY(file.open(QFile::WriteOnly));
        const auto image = m_images->image(url(u"a.png"_s));
        const auto thumbnail = m_images->thumbnail(url(u"a.png"_s), {9, 9});
        auto completion = m_images->completion(url(u"a.png"_s));
        QVERIFY(lookedAgain(2));
        m_images.reset();
        QVERIFY(image.isFinished() && thumbnail.isFinished() && completion.isFinished());
        QVERIFY(image.result().isNull());
        QVERIFY(thumbnail.result().isNull());
        QVERIFY(!completion.isCanceled());
    }

    void aCancelledRequestLetsGoOfTheFile()
    {
        const qsizetype idle = descriptorsAtWork();
        QFile file(path(u"a.png"_s));
        QVERIFY(file.open(QFile::WriteOnly));
        const qsizetype before = openDescriptors();
        QCOMPARE(before, idle + 1);
        auto image = m_images->image(url(u"a.png"_s));
        QVERIFY(lookedAgain(2));
        QVERIFY(openDescriptors() > before);
        image.cancel();
        QVERIFY(QTest::qWaitFor([&] { return openDescriptors() == before; }, patience));
    }
};

VELMORA_EVENTS_TEST(ScreenshotImagesTest)
#include "ScreenshotImagesTest.moc"
