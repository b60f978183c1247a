// SPDX-License-Identifier: MIT
#include "naming/SuggestionQueue.h"

#include "core/lowerThreadPriority.h"
#include "imaging/HeldScreenshot.h"
#include "imaging/pictureTexts.h"
#include "naming/NameFile.h"
#include "naming/NameWords.h"
#include "naming/applicationOfPicture.h"
#include "platform/TextRecognizer.h"

#include <QSemaphore>

#include <chrono>

namespace
{

/// How often a thread that waits for pixels checks whether they are still wanted.
constexpr std::chrono::milliseconds cancellationInterval{50};

/// A picture on its way from one thread to another.
struct Delivery {
    QImage picture;
    QSemaphore arrived;
};

} // namespace

SuggestionQueue::SuggestionQueue(TextRecognizer &recognizer, ScreenshotImages &images)
    : m_recognizer(recognizer), m_images(images)
{
    prepare();
}

/// The recogniser warms up while the picture is completed and decoded.
void SuggestionQueue::prepare()
{
    m_threads.start([this] {
        lowerThreadPriority();
        m_recognizer.warmUp();
    });
}

QFuture<QString> SuggestionQueue::add(const Request &request)
{
    const auto suggestion = std::make_shared<Suggestion>();
    suggestion->request = request;
    suggestion->promise.start();
    {
        const std::lock_guard lock(m_mutex);
        suggestion->priority = ++m_lastPriority;
        m_unfinished.insert(suggestion);
        if (!m_stopped)
            prepare();
    }
    const QFuture<QString> name = suggestion->promise.future();
    m_images.completion(request.file).then([queue = shared_from_this(), suggestion] {
        queue->start(suggestion);
    });
    return name;
}

void SuggestionQueue::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        m_threads.clear();
    }
    m_threads.waitForDone();
    std::unordered_set<SuggestionPointer> unfinished;
    {
        const std::lock_guard lock(m_mutex);
        unfinished.swap(m_unfinished);
    }
    for (const SuggestionPointer &suggestion : unfinished) {
        suggestion->promise.future().cancel();
        suggestion->promise.finish();
    }
}

void SuggestionQueue::start(const SuggestionPointer &suggestion)
{
    const std::lock_guard lock(m_mutex);
    if (!m_stopped)
        m_threads.start([this, suggestion] { work(suggestion); }, suggestion->priority);
}

void SuggestionQueue::work(const SuggestionPointer &suggestion)
{
    lowerThreadPriority();
    const QString name = suggestedName(*suggestion);
    if (m_stopped)
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_unfinished.erase(suggestion);
    }
    suggestion->request.file.reset();
    suggestion->promise.addResult(name);
    suggestion->promise.finish();
}

QString SuggestionQueue::suggestedName(const Suggestion &suggestion)
{
    const QString appName = applicationOf(suggestion.request);
    NameWords words(appName);
    const QImage image = picture(suggestion);
    if (!image.isNull()) {
        const auto &areas = suggestion.request.blindAreas;
        m_recognizer.recognize(
            {image, areas ? areas(image.size()) : QList<QRect>()},
            [&](const QString &line) { return words.add(line); },
            [&] { return isCancelled(suggestion); });
    }
    return NameFile::nameFromWords(words.words(), appName, suggestion.request.fileURL);
}

QString SuggestionQueue::applicationOf(const Request &request)
{
    if (!request.isAppNameAssumed || !request.file)
        return request.appName;
    const std::shared_ptr<OpenFile> file = request.file->open();
    const QString fromPicture =
        file ? applicationOfPicture(pictureTexts(file->descriptor())) : QString();
    return fromPicture.isEmpty() ? request.appName : fromPicture;
}

QImage SuggestionQueue::picture(const Suggestion &suggestion)
{
    if (isCancelled(suggestion))
        return {};
    const auto delivery = std::make_shared<Delivery>();
    QFuture<QImage> image = m_images.image(suggestion.request.file);
    image.then([delivery](const QImage &picture) {
        delivery->picture = picture;
        delivery->arrived.release();
    });
    while (!delivery->arrived.tryAcquire(1, cancellationInterval)) {
        if (isCancelled(suggestion)) {
            image.cancel();
            return {};
        }
    }
    return delivery->picture;
}

bool SuggestionQueue::isCancelled(const Suggestion &suggestion) const
{
    return m_stopped || suggestion.promise.isCanceled();
}
