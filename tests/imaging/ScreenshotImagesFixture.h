// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ScreenshotImages.h"
#include "tests/fakes/CountedFileWriters.h"
#include "tests/imaging/TestPictures.h"

#include <QFuture>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// The pictures of real files, with a count of how often it was asked whether somebody still writes
/// one.
class ScreenshotImagesFixture
{
protected:
    static constexpr int patience = 20'000; // milliseconds

    void begin()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_writers = std::make_unique<CountedFileWriters>();
        m_images = std::make_unique<ScreenshotImages>(*m_writers);
    }
    void end()
    {
        m_images.reset();
        m_writers.reset();
        m_folder.reset();
    }

    static void addFormats()
    {
        QTest::addColumn<QString>("format");
        for (const char *format : {"png", "jpeg", "tiff", "heic"})
            QTest::newRow(format) << QString::fromLatin1(format);
    }

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }

    bool lookedAgain(int times) const
    {
        const int before = m_writers->asked;
        return QTest::qWaitFor([&] { return m_writers->asked >= before + times; }, patience);
    }
    static bool isFinished(const QFuture<QImage> &future)
    {
        return QTest::qWaitFor([&] { return future.isFinished(); }, patience);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CountedFileWriters> m_writers;
    std::unique_ptr<ScreenshotImages> m_images;
    const QImage m_picture = TestPictures::fourFields({640, 400});
    const QByteArray m_png = TestPictures::encoded(m_picture, u"png"_s);
};
