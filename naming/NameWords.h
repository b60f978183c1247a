// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Collects the words of a screenshot's name, line by line: the application's first token and the
/// first few meaningful words of the text. Words that are too long, are plain numbers or belong to
/// the application's name are skipped. The result is the same as if all lines came at once, joined
/// by spaces.
class NameWords
{
public:
    static constexpr qsizetype maximumTextWords = 4;
    /// Longer runs are not words but paths, keys and misreadings.
    static constexpr qsizetype maximumCharacters = 24;

    explicit NameWords(const QString &appName);

    /// Adds the next line of text. False if no further line can change the words.
    bool add(const QString &line);

    QStringList words() const;

private:
    bool isUsable(const QString &token) const;

    QStringList m_applicationTokens;
    QStringList m_textWords;
};
