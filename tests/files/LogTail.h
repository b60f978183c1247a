// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraLog.h"

#include <QFile>
#include <QStringList>

using namespace Qt::StringLiterals;

/// What is written to the program's log from now on. All tests on a machine share that file, so
/// each checks only lines about its own folder.
class LogTail
{
public:
    LogTail() : m_start(QFile(written()).size()) {}

    /// The messages that contain `text`, without their timestamps.
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
    /// The log, once this program has written all its lines so far.
    static QString written()
    {
        VelmoraLog::waitUntilWritten(std::chrono::seconds(10));
        return u"/tmp/Velmora.log"_s;
    }

    qint64 m_start;
};
