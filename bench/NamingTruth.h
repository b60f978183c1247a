// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// What is known about one picture of a set, to judge its name by.
class NamingTruth
{
public:
    /// The pictures listed in the truth.json in `folder`: an array of objects with the keys file,
    /// app, has_text, words, and optionally headline. Nothing when it can't be read.
    static std::optional<QList<NamingTruth>> read(const QString &folder);

    const QString &file() const { return m_file; }
    const QString &appName() const { return m_appName; }
    bool hasText() const { return m_hasText; }

    /// Whether a word of a name is in the picture: it is one of the picture's words when both are
    /// folded, or a camel-case piece of one in the spelling of `text`, which is all that was read.
    bool isRight(const QString &word, const QString &text) const;

    bool isInHeadline(const QString &word) const { return m_headline.contains(word); }

private:
    QString m_file;
    QString m_appName;
    bool m_hasText = false;
    QSet<QString> m_words;
    QSet<QString> m_headline;
};
