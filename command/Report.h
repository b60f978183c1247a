// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"
#include "command/Console.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

/// Reports the result for each picture in the requested format, and counts failures.
class Report
{
public:
    Report(Console &console, OutputFormat format);

    enum class Renamed { No, Yes };

    // These return false once standard output can no longer be written.

    /// A file, and the name that it now has or would get.
    bool name(const QByteArray &oldPath, const QByteArray &newPath, Renamed renamed);

    enum class Paths { Hidden, Shown };

    /// The text of a picture; with `Paths::Shown`, each line starts with the path.
    bool text(const QByteArray &path, const QStringList &lines, Paths paths);

    /// A picture that was found, and the matching line, which only JSON includes.
    bool found(const QByteArray &path, const QString &line);

    /// One line on standard error; in JSON also an object.
    bool failure(const QByteArray &path, const QByteArray &reason);

    /// Any other message, on standard error.
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
