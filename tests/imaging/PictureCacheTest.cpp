// SPDX-License-Identifier: MIT
#include "imaging/PictureCache.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace std::chrono_literals;

class PictureCacheTest : public QObject
{
    Q_OBJECT

    const PictureCache::Time m_start = PictureCache::Time(1h);

    static FileIdentity file(quint64 serial, qint64 size = 1)
    {
        FileIdentity identity;
        identity.serial = serial;
        identity.size = size;
        return identity;
    }

    static DecodedPicture picture(int width = 10, int height = 10)
    {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::red);
        return {image, image};
    }

private Q_SLOTS:
    void aPictureIsFoundByItsFileAndTheFilesState()
    {
        PictureCache cache;
        const DecodedPicture image = picture();
        cache.insert(file(1), image, m_start);
        QCOMPARE(cache.find(file(1), m_start).top.cacheKey(), image.top.cacheKey());
        QVERIFY(cache.find(file(1, 2), m_start).isNull());
        QVERIFY(cache.find(file(2), m_start).isNull());
    }

    void aNewStateOfAFileReplacesTheOldOne()
    {
        PictureCache cache;
        cache.insert(file(1, 1), picture(), m_start);
        cache.insert(file(1, 2), picture(), m_start);
        QVERIFY(cache.find(file(1, 1), m_start).isNull());
        QVERIFY(!cache.find(file(1, 2), m_start).isNull());
    }

    void onlyTheLastUsedFewStay()
    {
        PictureCache cache;
        for (quint64 serial = 1; serial <= 3; ++serial)
            cache.insert(file(serial), picture(), m_start);
        cache.find(file(1), m_start);
        cache.insert(file(4), picture(), m_start);
        QVERIFY(!cache.find(file(4), m_start).isNull());
        QVERIFY(!cache.find(file(1), m_start).isNull());
        QVERIFY(!cache.find(file(3), m_start).isNull());
        QVERIFY(cache.find(file(2), m_start).isNull());
    }

    void aLargePictureStaysAlone()
    {
        PictureCache cache;
        cache.insert(file(1), picture(), m_start);
        cache.insert(file(2), picture(6000, 6000), m_start);
        QVERIFY(!cache.find(file(2), m_start).isNull());
        QVERIFY(cache.find(file(1), m_start).isNull());
    }

    void aPictureIsDroppedAfterItsLifetimeWithoutUse()
    {
        PictureCache cache;
        cache.insert(file(1), picture(), m_start);
        cache.dropUnused(m_start + 4s);
        QVERIFY(!cache.find(file(1), m_start + 4s).isNull());
        cache.dropUnused(m_start + 8s);
        QVERIFY(!cache.isEmpty());
        cache.dropUnused(m_start + 9s);
        QVERIFY(cache.isEmpty());
    }
};

VELMORA_PLAIN_TEST(PictureCacheTest)
#include "PictureCacheTest.moc"
