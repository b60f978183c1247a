// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ScreenshotImages.h"
#include "naming/BlindAreas.h"

#include <QFuture>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <memory>

class SuggestionQueue;
class TextRecognizer;

/// Turns a new screenshot into a short, readable, file-system-safe name such as
/// "chrome-pull-request-review-comments.png", from the words in the picture and the name of the
/// application that was in front.
class ScreenshotNamer
{
public:
    /// Warms up the recogniser in the background. Both must outlive this object.
    ScreenshotNamer(TextRecognizer &recognizer, ScreenshotImages &images);
    /// Stops the recognition in progress and returns within a second; the futures are cancelled.
    ~ScreenshotNamer();

    /// Reads the picture on a background thread and returns a name, never empty. Without readable
    /// text it is the application's name or the fallback name. The newest request is served first;
    /// cancelling its future ends it. Any thread. The file may be renamed as soon as this returns.
    ///
    /// @param blindAreas areas not to read, because they are not part of the screenshot itself
    QFuture<QString> suggestFilename(const QUrl &fileURL, const QString &appName,
                                     const BlindAreas &blindAreas = {});

    /// An assumed application is replaced by the one that the picture itself names, if any.
    enum class AppName { Known, Assumed };

    /// The same for a file that is already open; `fileURL` gives the extension.
    QFuture<QString> suggestFilename(const ScreenshotImages::Held &file, const QUrl &fileURL,
                                     const QString &appName, const BlindAreas &blindAreas = {},
                                     AppName kind = AppName::Known);

    // These forward to NameFile and NameTokens, under the names that callers know.

    static QString fallbackName(const QString &appName, const QUrl &fileURL);
    static QString sanitize(const QString &name, const QString &fallback);
    static QString splitCamelCase(const QString &text);
    static QStringList tokens(const QString &text);
    static QStringList meaningfulTokens(const QStringList &tokens);
    static QStringList applicationTokens(const QString &appName);

private:
    ScreenshotImages &m_images;
    std::shared_ptr<SuggestionQueue> m_suggestions;
};
