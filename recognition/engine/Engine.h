// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// A word as the engine reads it.
struct ReadWord {
    QString text;
    double confidence = 0; ///< 0 to 1
};

/// One text recognition engine with its models. Takes about 20 MB, and 30 ms to create. Used by one
/// thread at a time; it starts none of its own.
class Engine
{
public:
    /// Loads the English model and, where they are installed, those of `languages` (the engine's
    /// names, such as "deu"). Without any model it reads nothing.
    explicit Engine(const QStringList &languages);
    ~Engine();

    /// Reads the words of a picture of one line, dark on white.
    std::vector<ReadWord> read(const QImage &line);

private:
    class Private;
    std::unique_ptr<Private> d;
};
