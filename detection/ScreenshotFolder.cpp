// SPDX-License-Identifier: MIT
#include "detection/ScreenshotFolder.h"

#include "core/whenFinished.h"
#include "detection/ScreenshotFolderResolver.h"
#include "filesystem/FileUrls.h"

#include <QFileInfo>
#include <QSemaphore>

using namespace std::chrono_literals;

namespace
{

/// Reading two small files takes a millisecond, or a little longer on a busy machine at login.
constexpr auto longestWaitForFirstAnswer = 100ms;

/// At program exit, the wait for a read that hangs.
constexpr auto longestWaitAtTheEnd = 1s;

/// Whether something other than a folder is at the path. A missing folder may still appear.
bool isSomethingElse(const QUrl &folder)
{
    const QFileInfo info(folder.toLocalFile());
    return info.exists() && !info.isDir();
}

} // namespace

/// The result of the first read, for a caller that waits for it.
struct ScreenshotFolder::FirstAnswer {
    QUrl folder;
    QSemaphore done;
};

ScreenshotFolder::ScreenshotFolder(ScreenshotPreferences &preferences, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_first(std::make_shared<FirstAnswer>())
    , m_background(longestWaitAtTheEnd)
{
    connect(&preferences, &ScreenshotPreferences::changed, this, &ScreenshotFolder::resolve);
    resolve();
}

ScreenshotFolder::~ScreenshotFolder() = default;

QUrl ScreenshotFolder::current()
{
    if (m_folder.isEmpty()) {
        const bool answered =
            m_first->done.tryAcquire(1, static_cast<int>(longestWaitForFirstAnswer.count()));
        m_folder = answered ? m_first->folder : ScreenshotFolderResolver::defaultFolder();
    }
    return m_folder;
}

void ScreenshotFolder::choose(const QUrl &folder)
{
    if (folder.toLocalFile().isEmpty())
        return;
    ScreenshotFolderResolver::setScreenshotFolder(m_preferences, folder);
    m_folder = FileUrls::standardized(folder);
    // A read in progress may still return the old value.
    m_isOutdated = m_isResolving;
}

void ScreenshotFolder::resolve()
{
    if (m_isResolving) {
        m_isOutdated = true;
        return;
    }
    m_isResolving = true;
    m_isOutdated = false;
    const auto answer = m_background.ask([preferences = &m_preferences, first = m_first] {
        preferences->follow();
        const QUrl folder = ScreenshotFolderResolver::currentScreenshotFolder(*preferences);
        const bool isAnswer = !isSomethingElse(folder);
        if (first->folder.isEmpty()) {
            first->folder = isAnswer ? folder : ScreenshotFolderResolver::defaultFolder();
            first->done.release();
        }
        return isAnswer ? folder : QUrl();
    });
    whenFinished(answer, this, [this](const QUrl &folder) {
        m_isResolving = false;
        if (m_isOutdated)
            resolve();
        else
            take(folder);
    });
}

void ScreenshotFolder::take(const QUrl &folder)
{
    if (folder.isEmpty() || folder == m_folder)
        return;
    const bool hasBeenAsked = !m_folder.isEmpty();
    m_folder = folder;
    if (hasBeenAsked)
        Q_EMIT changed(folder);
}
