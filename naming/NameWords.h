// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Collects, line by line, the words of a screenshot's name: the application's first token and the
/// first few meaningful words of the text that are not too long, no mere numbers and none of the
/// application's. The words are the same as if all lines had been given at once, joined by spaces.
class NameWords
{
public:
    static constexpr qsizetype maximumTextWords = 4;
    /// Longer words are none, but paths, keys and misreadings.
    static constexpr qsizetype maximumCharacters = 24;

    explicit NameWords(const QString &appName);

    /// Takes the next line of text. False when no further line can change the words.
    bool add(const QString &line);

    QStringList words() const;

private:
    bool isUsable(const QString &token) const;

    QStringList m_applicationTokens;
    QStringList m_textWords;
};
