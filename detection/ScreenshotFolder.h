// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"
#include "platform/ScreenshotPreferences.h"

#include <QObject>
#include <QUrl>

#include <memory>

/// The folder in which the system saves screenshots: the one answer for all who ask. It is found
/// out in the background, remembered, and followed when the system's or the desktop tool's
/// settings change. A setting that names something else than a folder is no answer; the folder
/// before it stays. Main thread.
class ScreenshotFolder : public QObject
{
    Q_OBJECT
public:
    /// Begins to find out. The preferences outlive this object.
    explicit ScreenshotFolder(ScreenshotPreferences &preferences, QObject *parent = nullptr);
    ~ScreenshotFolder() override;

    /// Standardised; it need not exist. Answers from memory. Only the first call may wait a moment
    /// for the first answer; where that takes long, the home's "Desktop" stands in for it, and
    /// changed() tells of the answer.
    QUrl current();

    /// Makes the system save in `folder` (`ScreenshotFolderResolver::setScreenshotFolder`), which
    /// is the answer from now on. A URL that is no local one changes nothing.
    void choose(const QUrl &folder);

Q_SIGNALS:
    /// The settings name another folder than current() did, and not by choose().
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
