// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"
#include "command/Console.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

/// Says what became of each picture, in the format that was asked for, and counts what failed.
class Report
{
public:
    Report(Console &console, OutputFormat format);

    enum class Renamed { No, Yes };

    // False when standard output takes nothing any more.

    /// A file, and the name that it has or would have.
    bool name(const QByteArray &oldPath, const QByteArray &newPath, Renamed renamed);

    enum class Paths { Hidden, Shown };

    /// The text of a picture; among several, with its path before each line.
    bool text(const QByteArray &path, const QStringList &lines, Paths paths);

    /// A picture that was found, and by which line; JSON alone has the line.
    bool found(const QByteArray &path, const QString &line);

    /// One clear line on standard error; JSON has an object too.
    bool failure(const QByteArray &path, const QByteArray &reason);

    /// Anything else that has to be said, on standard error.
    void note(const QByteArray &text);

    bool hasFailures() const { return m_failures > 0; }
    int failures() const { return m_failures; }

private:
    bool fields(const QByteArray &first, const QByteArray &second);
    bool object(const QJsonObject &object);

    Console &m_console;
    const OutputFormat m_format;
    int m_failures = 0;
};
