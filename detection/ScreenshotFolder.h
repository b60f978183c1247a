// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"
#include "platform/ScreenshotPreferences.h"

#include <QObject>
#include <QUrl>

#include <memory>

/// The folder in which the system saves screenshots, for everything in the program that needs it.
/// It is determined in the background, cached, and updated when the settings of the system or of
/// the desktop's screenshot tool change. A setting that names something other than a folder is
/// ignored, and the previous folder stays. Main thread.
class ScreenshotFolder : public QObject
{
    Q_OBJECT
public:
    /// Starts to determine the folder. The preferences must outlive this object.
    explicit ScreenshotFolder(ScreenshotPreferences &preferences, QObject *parent = nullptr);
    ~ScreenshotFolder() override;

    /// Standardised; it need not exist. Answers from memory. Only the first call may wait, briefly,
    /// for the first result. If that takes too long, the answer is "Desktop" in the user's home,
    /// and changed() reports the result later.
    QUrl current();

    /// Makes the system save to `folder` (`ScreenshotFolderResolver::setScreenshotFolder`), which
    /// is the answer from now on. A URL that is not local changes nothing.
    void choose(const QUrl &folder);

Q_SIGNALS:
    /// The settings now name another folder than current() did, and not because of choose().
    void changed(const QUrl &folder);

private:
    struct FirstAnswer;

    void resolve();
    void take(const QUrl &folder);

    ScreenshotPreferences &m_preferences;
    std::shared_ptr<FirstAnswer> m_first;
    QUrl m_folder;
    bool m_isResolving = false;
    bool m_isOutdated = false;
    BackgroundThread m_background;
};
