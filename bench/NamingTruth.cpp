// SPDX-License-Identifier: MIT
#include "bench/NamingTruth.h"

#include "naming/ScreenshotNamer.h"
#include "naming/foldedText.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

void addFolded(const QJsonValue &words, QSet<QString> &folded)
{
    for (const QJsonValue &value : words.toArray()) {
        folded.insert(foldedText(value.toString()));
        for (const QString &token : ScreenshotNamer::tokens(value.toString()))
            folded.insert(token);
    }
}

} // namespace

std::optional<QList<NamingTruth>> NamingTruth::read(const QString &folder)
{
    QFile file(folder + "/truth.json"_L1);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isArray())
        return std::nullopt;
    QList<NamingTruth> pictures;
    for (const QJsonValue &value : document.array()) {
        const QJsonObject object = value.toObject();
        NamingTruth picture;
        picture.m_file = object["file"_L1].toString();
        picture.m_appName = object["app"_L1].toString();
        picture.m_hasText = object["has_text"_L1].toBool();
        addFolded(object["words"_L1], picture.m_words);
        addFolded(object["also"_L1], picture.m_words);
        addFolded(object["headline"_L1], picture.m_headline);
        pictures.append(picture);
    }
    return pictures;
}

bool NamingTruth::isRight(const QString &word, const QString &text) const
{
    if (m_words.contains(word))
        return true;
    static const QRegularExpression separators(u"[^\\p{L}\\p{M}\\p{N}]+"_s);
    for (const QString &token : text.split(separators, Qt::SkipEmptyParts)) {
        if (m_words.contains(foldedText(token)) && ScreenshotNamer::tokens(token).contains(word))
            return true;
    }
    return false;
}
