#include "naming/ScreenshotNamer.h"

#include "core/VelmoraTimestamp.h"
#include "filesystem/FileUrls.h"
#include "naming/Characters.h"
#include "naming/NameTables.h"
#include "naming/SuggestionQueue.h"
#include "naming/foldedText.h"

namespace
{

constexpr qsizetype minimumTokenCharacters = 3;
constexpr qsizetype maximumApplicationTokens = 2;
constexpr qsizetype maximumParts = 8;
constexpr qsizetype maximumBaseCharacters = 58;
/// What file systems take for a whole name, less the extension and a number. Only letters that are
/// built of several signs come near it.
constexpr qsizetype maximumBaseBytes = 240;

constexpr QLatin1Char hyphen('-');

QString withExtension(const QString &base, const QString &extension)
{
    return extension.isEmpty() ? base : base + QLatin1Char('.') + extension;
}

QString hyphenated(const QString &text)
{
    QString replaced;
    replaced.reserve(text.size());
    for (const char32_t codePoint : text.toUcs4()) {
        if (Characters::isLetterOrNumber(codePoint) || Characters::isMark(codePoint))
            replaced += QChar::fromUcs4(codePoint);
        else
            replaced += hyphen;
    }
    return replaced.split(hyphen, Qt::SkipEmptyParts).mid(0, maximumParts).join(hyphen);
}

QString cut(const QString &base)
{
    QString shortened = Characters::first(base, maximumBaseCharacters);
    for (qsizetype most = maximumBaseCharacters; shortened.toUtf8().size() > maximumBaseBytes;)
        shortened = Characters::first(base, --most);
    return shortened;
}

} // namespace

ScreenshotNamer::ScreenshotNamer(TextRecognizer &recognizer, ScreenshotImages &images)
    : m_images(images), m_suggestions(std::make_shared<SuggestionQueue>(recognizer, images))
{
}

ScreenshotNamer::~ScreenshotNamer()
{
    m_suggestions->stop();
}

QFuture<QString> ScreenshotNamer::suggestFilename(const QUrl &fileURL, const QString &appName)
{
    return suggestFilename(m_images.hold(fileURL), fileURL, appName);
}

QFuture<QString> ScreenshotNamer::suggestFilename(const ScreenshotImages::Held &file,
                                                  const QUrl &fileURL, const QString &appName)
{
    return m_suggestions->add(file, fileURL, appName);
}

QString ScreenshotNamer::splitCamelCase(const QString &text)
{
    QString split;
    split.reserve(text.size());
    bool afterLowerCase = false;
    for (const QStringView character : Characters::split(text)) {
        if (afterLowerCase && Characters::isUpperCase(character))
            split += QLatin1Char(' ');
        split += character;
        afterLowerCase = Characters::isLowerCase(character);
    }
    return split;
}

QStringList ScreenshotNamer::tokens(const QString &text)
{
    QStringList found;
    QString token;
    for (const char32_t codePoint : foldedText(splitCamelCase(text)).toUcs4()) {
        const bool continues = !token.isEmpty() && Characters::continuesCharacter(codePoint);
        if (continues || Characters::isLetterOrNumber(codePoint)) {
            token += QChar::fromUcs4(codePoint);
        } else if (!token.isEmpty()) {
            found.append(token);
            token.clear();
        }
    }
    if (!token.isEmpty())
        found.append(token);
    return found;
}

QStringList ScreenshotNamer::meaningfulTokens(const QStringList &tokens)
{
    QStringList kept;
    for (const QString &token : tokens) {
        if (Characters::count(token) >= minimumTokenCharacters && !NameTables::isStopWord(token) &&
            !kept.contains(token))
            kept.append(token);
    }
    return kept;
}

QStringList ScreenshotNamer::applicationTokens(const QString &appName)
{
    const QStringList meaningful = meaningfulTokens(tokens(appName));
    const QString alias = NameTables::applicationAlias(meaningful.join(hyphen));
    return alias.isNull() ? meaningful.mid(0, maximumApplicationTokens) : QStringList{alias};
}

QString ScreenshotNamer::sanitize(const QString &name, const QString &fallback)
{
    QString extension = FileUrls::pathExtension(name);
    if (extension.isEmpty())
        extension = FileUrls::pathExtension(fallback);
    const QString base = cut(hyphenated(foldedText(FileUrls::baseName(name))));
    return withExtension(base.isEmpty() ? FileUrls::baseName(fallback) : base, extension.toLower());
}

QString ScreenshotNamer::fallbackName(const QString &appName, const QUrl &fileURL)
{
    const QString ending = QStringLiteral("-screen-") + velmoraTimestamp();
    const QString extension = FileUrls::pathExtension(fileURL.toLocalFile());
    const QString application = applicationTokens(appName).join(hyphen);
    const QString last = QStringLiteral("screenshot");
    return sanitize(withExtension((application.isEmpty() ? last : application) + ending, extension),
                    withExtension(last + ending, extension));
}

QString ScreenshotNamer::nameFromWords(const QStringList &words, const QString &appName,
                                       const QUrl &fileURL)
{
    const QString fallback = fallbackName(appName, fileURL);
    const QString extension = FileUrls::pathExtension(fileURL.toLocalFile());
    return sanitize(words.isEmpty() ? fallback : withExtension(words.join(hyphen), extension),
                    fallback);
}
