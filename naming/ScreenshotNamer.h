#pragma once

#include "imaging/ScreenshotImages.h"

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
    /// Readies the recogniser in the background. Both must outlive this object.
    ScreenshotNamer(TextRecognizer &recognizer, ScreenshotImages &images);
    /// Abandons what is being recognised and returns within a second; the futures are cancelled.
    ~ScreenshotNamer();

    /// Reads the picture on a background thread and answers with a name, never empty; without
    /// readable text the application's name or the fallback name. The newest request is served
    /// first; cancelling its future ends it. Any thread; the file may be renamed as soon as this
    /// returns.
    QFuture<QString> suggestFilename(const QUrl &fileURL, const QString &appName);

    /// The same for a file that has been opened; `fileURL` gives the extension.
    QFuture<QString> suggestFilename(const ScreenshotImages::Held &file, const QUrl &fileURL,
                                     const QString &appName);

    // What follows is pure (fallbackName reads the clock). Any thread.

    /// A name that needs no text: application, "screen", time stamp.
    static QString fallbackName(const QString &appName, const QUrl &fileURL);

    /// The name that the words make, joined by hyphens; without words the fallback name.
    static QString nameFromWords(const QStringList &words, const QString &appName,
                                 const QUrl &fileURL);

    /// A safe file name: folded, lower case, words of letters and digits joined by hyphens, at most
    /// 8 parts and 58 characters, and the extension in lower case. What `name` lacks comes from
    /// `fallback`.
    static QString sanitize(const QString &name, const QString &fallback);

    /// A space before each capital that follows a small letter.
    static QString splitCamelCase(const QString &text);

    /// The text's runs of letters and numbers, folded and in lower case.
    static QStringList tokens(const QString &text);

    /// The tokens of three or more characters that are no stop words, each once.
    static QStringList meaningfulTokens(const QStringList &tokens);

    /// The application's one alias, or up to two tokens of its name.
    static QStringList applicationTokens(const QString &appName);

private:
    ScreenshotImages &m_images;
    std::shared_ptr<SuggestionQueue> m_suggestions;
};
