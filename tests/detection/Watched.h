// SPDX-License-Identifier: MIT
#pragma once

#include "detection/ScreenshotWatcher.h"
#include "filesystem/FileUrls.h"
#include "tests/world/Waiting.h"

#include <QCoreApplication>
#include <QThread>

/// A watcher of a folder and the files it has reported.
class Watched
{
public:
    using MakeFolderEvents = std::function<std::unique_ptr<FolderEvents>()>;

    explicit Watched(const QString &folder, MakeFolderEvents makeEvents = makeFolderEvents)
        : m_watcher(std::make_unique<ScreenshotWatcher>(
              QUrl::fromLocalFile(folder), [this](const QUrl &url) { take(url); },
              std::move(makeEvents)))
    {
    }

    ScreenshotWatcher *operator->() { return m_watcher.get(); }
    void reset() { m_watcher.reset(); }

    QStringList names() const { return m_names; }
    QList<QUrl> urls() const { return m_urls; }
    bool everyCallWasOnTheMainThread() const { return m_onMainThread; }

private:
    void take(const QUrl &url)
    {
        m_onMainThread =
            m_onMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
        m_names.append(FileUrls::lastPathComponent(url));
        m_urls.append(url);
    }

    QStringList m_names;
    QList<QUrl> m_urls;
    bool m_onMainThread = true;
    std::unique_ptr<ScreenshotWatcher> m_watcher;
};

/// Long enough for all three rescans and several ticks.
inline void letAllScansPass()
{
    Waiting::letPass(std::chrono::milliseconds(400));
}

/// The same, with the main thread's event loop blocked, as while its owner is busy.
inline void letAllScansPassUnheard()
{
    Waiting::letPassUnheard(std::chrono::milliseconds(400));
}

inline QStringList fileNames(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *name : list)
        result.append(QString::fromUtf8(name));
    return result;
}
