// SPDX-License-Identifier: MIT
#include "naming/ScreenshotNamer.h"

#include "imaging/ScreenshotImages.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/imaging/TestPictures.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace TestPictures;

namespace
{

constexpr int patience = 100'000; // milliseconds
constexpr int screenshots = 200;
constexpr QSize screenSize(1920, 1080);

QStringList textOf(const QImage &picture)
{
    return {u"width%1"_s.arg(picture.width())};
}

qsizetype openDescriptors()
{
    return QDir(u"/dev/fd"_s).entryList(QDir::Files | QDir::System).size();
}

/// In megabytes, for this process.
qint64 residentMemory()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QFile::ReadOnly))
        return -1;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) / 1'000'000;
}

/// Sanitizers keep freed memory.
constexpr bool memoryIsMeasurable =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    false;
#else
    true;
#endif

} // namespace

class BurstTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manyScreenshotsAtOnceAreAllServedAndLeaveNothingBehind()
    {
        QTemporaryDir folder;
        const std::unique_ptr<FileWriters> writers = makeFileWriters();
        FakeTextRecognizer recognizer(textOf);
        ScreenshotImages images(*writers);
        ScreenshotNamer namer(recognizer, images);

        const QByteArray png = encoded(fourFields(screenSize), u"png"_s);
        const auto path = [&](int number) { return folder.filePath(u"%1.png"_s.arg(number)); };
        for (int number = 0; number < screenshots; ++number)
            QVERIFY(write(path(number), png));
        const auto first = namer.suggestFilename(QUrl::fromLocalFile(path(0)), QString());
        QVERIFY(QTest::qWaitFor([&] { return first.isFinished(); }, patience));
        const qint64 memoryBefore = residentMemory();
        const qsizetype descriptorsBefore = openDescriptors();

        QList<QFuture<QImage>> thumbnails;
        QList<QFuture<QString>> names;
        for (int number = 0; number < screenshots; ++number) {
            const QUrl file = QUrl::fromLocalFile(path(number));
            thumbnails.append(images.thumbnail(file, {240, 160}));
            names.append(namer.suggestFilename(file, QString()));
            QVERIFY(QFile::rename(path(number), path(number + screenshots)));
        }
        qint64 mostMemory = 0;
        qsizetype mostDescriptors = 0;
        const auto allDone = [&] {
            mostMemory = std::max(mostMemory, residentMemory());
            mostDescriptors = std::max(mostDescriptors, openDescriptors());
            return std::all_of(names.cbegin(), names.cend(),
                               [](const auto &name) { return name.isFinished(); });
        };
        QVERIFY(QTest::qWaitFor(allDone, patience));
        for (int number = 0; number < screenshots; ++number) {
            QVERIFY(QTest::qWaitFor([&] { return thumbnails.at(number).isFinished(); }, patience));
            QCOMPARE(thumbnails.at(number).result().size(), QSize(240, 135));
            QCOMPARE(names.at(number).result(), u"width1920.png"_s);
        }
        thumbnails.clear();

        const auto isCalmAgain = [&] {
            // Each thread of the two pools may have one open.
            return openDescriptors() <= descriptorsBefore + 2 * QThread::idealThreadCount() &&
                   (!memoryIsMeasurable || residentMemory() <= memoryBefore + 20);
        };
        const bool calm = QTest::qWaitFor(isCalmAgain, 30'000);
        qInfo() << "megabytes" << memoryBefore << mostMemory << residentMemory() << "descriptors"
                << descriptorsBefore << mostDescriptors << openDescriptors();
        QVERIFY(calm);
        QVERIFY(mostDescriptors - descriptorsBefore <= 150);
        if (memoryIsMeasurable)
            QVERIFY(mostMemory - memoryBefore <= 250);
    }
};

VELMORA_EVENTS_TEST(BurstTest)
#include "BurstTest.moc"
