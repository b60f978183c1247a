// SPDX-License-Identifier: MIT
#include "naming/NameFile.h"

#include "core/VelmoraTimestamp.h"
#include "filesystem/FileUrls.h"
#include "naming/Characters.h"
#include "naming/NameTokens.h"
#include "naming/foldedText.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype maximumParts = 8;
constexpr qsizetype maximumBaseCharacters = 58;
/// The longest name that file systems accept, less an extension and a number. Only names whose
/// letters consist of several code points come near it.
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

QString NameFile::sanitize(const QString &name, const QString &fallback)
{
    QString extension = FileUrls::pathExtension(name);
    if (extension.isEmpty())
        extension = FileUrls::pathExtension(fallback);
    const QString base = cut(hyphenated(foldedText(FileUrls::baseName(name))));
    return withExtension(base.isEmpty() ? FileUrls::baseName(fallback) : base, extension.toLower());
}

QString NameFile::fallbackName(const QString &appName, const QUrl &fileURL)
{
    const QString ending = u"-screen-"_s + velmoraTimestamp();
    const QString extension = FileUrls::pathExtension(fileURL.toLocalFile());
    const QString application = NameTokens::applicationTokens(appName).join(hyphen);
    const QString last = u"screenshot"_s;
    return sanitize(withExtension((application.isEmpty() ? last : application) + ending, extension),
                    withExtension(last + ending, extension));
}

QString NameFile::nameFromWords(const QStringList &words, const QString &appName,
                                const QUrl &fileURL)
{
    const QString fallback = fallbackName(appName, fileURL);
    const QString extension = FileUrls::pathExtension(fileURL.toLocalFile());
    return sanitize(words.isEmpty() ? fallback : withExtension(words.join(hyphen), extension),
                    fallback);
}
