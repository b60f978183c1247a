// SPDX-License-Identifier: MIT
#include "files/recent/RecentThumbnails.h"

#include "imaging/ScreenshotImages.h"
#include "platform/FileWriters.h"
#include "style/ImageView.h"
#include "tests/fakes/CountedFileWriters.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <atomic>

namespace
{

using namespace Qt::StringLiterals;

} // namespace

class RecentThumbnailsTest : public QObject
{
    Q_OBJECT

    static bool isRead(ScreenshotImages &images, const QUrl &file)
    {
        const auto image = images.image(file);
        return QTest::qWaitFor([&] { return image.isFinished(); }, 20'000);
    }

private Q_SLOTS:
    void whatIsNoPictureIsNotReadAgainUntilItChanges()
    {
        const TestFiles files;
        const QUrl file = files.make(u"broken.png"_s, "no picture at all");
        CountedFileWriters writers;
        ScreenshotImages images(writers);
        RecentThumbnails thumbnails(images, {64, 48});
        ImageView first;
        thumbnails.show(file, &first);
        QVERIFY(isRead(images, file));
        QCoreApplication::processEvents(); // the same attempt has answered both
        const int asked = writers.asked;
        QVERIFY(asked > 0);

        ImageView second;
        thumbnails.show(file, &second);
        QVERIFY(!second.image().isNull());
        QVERIFY(!QTest::qWaitFor([&] { return writers.asked > asked; }, 500));

        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(file.toLocalFile(), "png"));
        ImageView third;
        thumbnails.show(file, &third);
        QTRY_COMPARE(third.image().pixelColor(30, 20), QColor(Qt::red));
    }
};

VELMORA_WIDGETS_TEST(RecentThumbnailsTest)
#include "RecentThumbnailsTest.moc"
