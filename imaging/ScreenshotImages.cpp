// SPDX-License-Identifier: MIT
#include "imaging/ScreenshotImages.h"

#include "imaging/PictureLoader.h"

#include <QThread>

using namespace Qt::StringLiterals;

class ScreenshotImages::Private
{
public:
    explicit Private(FileWriters &writers)
        : m_budget(std::make_shared<PictureBudget>(PictureBudget::ofScreenshots))
        , m_loader(new PictureLoader(writers, m_budget))
    {
        m_thread.setObjectName(u"velmora.screenshot-images"_s);
        m_loader->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_loader, &QObject::deleteLater);
        m_thread.start();
    }

    ~Private()
    {
        m_thread.quit();
        m_thread.wait();
    }

    const std::shared_ptr<PictureBudget> &budget() const { return m_budget; }

    Held hold(const QUrl &file) { return HeldScreenshot::hold(file, m_openCount); }

    QFuture<QImage> request(const Held &file, PictureRequest::Kind kind, QSize bounds = {})
    {
        const auto request = std::make_shared<PictureRequest>(kind, bounds);
        if (file) {
            QMetaObject::invokeMethod(
                m_loader, [loader = m_loader, file, request] { loader->load(file, request); },
                Qt::QueuedConnection);
        }
        return request->future();
    }

    QFuture<void> completion(const Held &file)
    {
        return request(file, PictureRequest::Kind::Completion).then([](const QImage &) {});
    }

private:
    HeldScreenshot::OpenCount m_openCount = std::make_shared<std::atomic_int>(0);
    std::shared_ptr<PictureBudget> m_budget;
    QThread m_thread;
    PictureLoader *m_loader; ///< deleted by its own thread, at its end
};

ScreenshotImages::ScreenshotImages(FileWriters &writers) : d(std::make_unique<Private>(writers)) {}

ScreenshotImages::~ScreenshotImages() = default;

QFuture<QImage> ScreenshotImages::image(const QUrl &file)
{
    return image(hold(file));
}

QFuture<QImage> ScreenshotImages::thumbnail(const QUrl &file, QSize bounds)
{
    return thumbnail(hold(file), bounds);
}

QFuture<void> ScreenshotImages::completion(const QUrl &file)
{
    return completion(hold(file));
}

ScreenshotImages::Held ScreenshotImages::hold(const QUrl &file)
{
    return d->hold(file);
}

QFuture<QImage> ScreenshotImages::image(const Held &file)
{
    return d->request(file, PictureRequest::Kind::Top);
}

QFuture<QImage> ScreenshotImages::thumbnail(const Held &file, QSize bounds)
{
    return d->request(file, PictureRequest::Kind::Thumbnail, bounds);
}

QFuture<void> ScreenshotImages::completion(const Held &file)
{
    return d->completion(file);
}

const std::shared_ptr<PictureBudget> &ScreenshotImages::budget() const
{
    return d->budget();
}
