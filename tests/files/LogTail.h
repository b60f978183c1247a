// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraLog.h"

#include <QFile>
#include <QStringList>

/// What is written to the program's log from now on. Tests of one machine share that file, so each
/// looks only for lines about its own folder.
class LogTail
{
public:
    LogTail() : m_start(QFile(written()).size()) {}

    /// The messages, without their stamps, that hold `text`.
    QStringList messagesWith(const QString &text) const
    {
        QFile log(written());
        if (!log.open(QFile::ReadOnly) || !log.seek(m_start))
            return {};
        QStringList messages;
        const auto lines = QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (line.contains(text))
                messages << line.section(QLatin1Char(' '), 1);
        }
        return messages;
    }

private:
    /// The log with all that this program has to say so far.
    static QString written()
    {
        VelmoraLog::waitUntilWritten(std::chrono::seconds(10));
        return QStringLiteral("/tmp/Velmora.log");
    }

    qint64 m_start;
};
