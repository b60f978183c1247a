// SPDX-License-Identifier: MIT
#include "naming/ScreenshotNamer.h"

#include "naming/NameFile.h"
#include "naming/NameTokens.h"
#include "naming/SuggestionQueue.h"

ScreenshotNamer::ScreenshotNamer(TextRecognizer &recognizer, ScreenshotImages &images)
    : m_images(images), m_suggestions(std::make_shared<SuggestionQueue>(recognizer, images))
{
}

ScreenshotNamer::~ScreenshotNamer()
{
    m_suggestions->stop();
}

QFuture<QString> ScreenshotNamer::suggestFilename(const QUrl &fileURL, const QString &appName,
                                                  const BlindAreas &blindAreas)
{
    return suggestFilename(m_images.hold(fileURL), fileURL, appName, blindAreas);
}

QFuture<QString> ScreenshotNamer::suggestFilename(const ScreenshotImages::Held &file,
                                                  const QUrl &fileURL, const QString &appName,
                                                  const BlindAreas &blindAreas, AppName kind)
{
    return m_suggestions->add({fileURL, appName, blindAreas, kind == AppName::Assumed, file});
}

QString ScreenshotNamer::splitCamelCase(const QString &text)
{
    return NameTokens::splitCamelCase(text);
}

QStringList ScreenshotNamer::tokens(const QString &text)
{
    return NameTokens::tokens(text);
}

QStringList ScreenshotNamer::meaningfulTokens(const QStringList &tokens)
{
    return NameTokens::meaningfulTokens(tokens);
}

QStringList ScreenshotNamer::applicationTokens(const QString &appName)
{
    return NameTokens::applicationTokens(appName);
}

QString ScreenshotNamer::sanitize(const QString &name, const QString &fallback)
{
    return NameFile::sanitize(name, fallback);
}

QString ScreenshotNamer::fallbackName(const QString &appName, const QUrl &fileURL)
{
    return NameFile::fallbackName(appName, fileURL);
}
