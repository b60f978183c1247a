// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ScreenshotImages.h"
#include "naming/BlindAreas.h"

#include <QFuture>
#include <QPromise>
#include <QString>
#include <QThreadPool>
#include <QUrl>

#include <atomic>
#include <memory>
#include <mutex>
#include <unordered_set>

class TextRecognizer;

/// Reads the text of screenshots on low-priority threads, at most one per core, newest screenshot
/// first. A request that waits for its turn, or for its file to be complete, holds no pixels and no
/// thread. Any thread.
class SuggestionQueue : public std::enable_shared_from_this<SuggestionQueue>
{
public:
    SuggestionQueue(TextRecognizer &recognizer, ScreenshotImages &images);

    struct Request {
        QUrl fileURL; ///< gives the name's extension
        QString appName;
        BlindAreas blindAreas;
        bool isAppNameAssumed = false; ///< the picture's own texts take precedence
        ScreenshotImages::Held file;
    };

    QFuture<QString> add(const Request &request);

    /// Cancels everything and returns when no thread runs any more. The recogniser and the images
    /// may be destroyed then. Requests that are added later are cancelled.
    void stop();

private:
    struct Suggestion {
        Request request;
        int priority = 0;
        QPromise<QString> promise;
    };
    using SuggestionPointer = std::shared_ptr<Suggestion>;

    void prepare();
    void start(const SuggestionPointer &suggestion);
    void work(const SuggestionPointer &suggestion);
    QString suggestedName(const Suggestion &suggestion);
    static QString applicationOf(const Request &request);
    QImage picture(const Suggestion &suggestion);
    bool isCancelled(const Suggestion &suggestion) const;

    TextRecognizer &m_recognizer;
    ScreenshotImages &m_images;
    std::atomic_bool m_stopped = false;
    std::mutex m_mutex;
    std::unordered_set<SuggestionPointer> m_unfinished; ///< guarded by the mutex
    int m_lastPriority = 0;                             ///< guarded by the mutex
    QThreadPool m_threads;                              ///< started with the mutex held
};
