// SPDX-License-Identifier: MIT
#include "command/Report.h"
#include "command/exitStatus.h"
#include "command/runs.h"
#include "search/SearchIndex.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

/// More than a person looks through, and enough for a script.
constexpr int mostFound = 1000;

QString wordsOf(const CommandOptions &options)
{
    QString words;
    for (const QByteArray &place : options.places)
        words += QString::fromLocal8Bit(place) + u' ';
    return words;
}

} // namespace

int Runs::find(const CommandOptions &options, Console &console)
{
    // Without it Qt does not find the database driver.
    int count = 1;
    static char name[] = "velmora-name";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    Report report(console, options.format);
    SearchIndex index;
    if (!index.exists()) {
        report.note("no text has been remembered yet: search once in Velmora's window Recent "
                    "Screenshots, and agree");
        return ExitStatus::someFailed;
    }
    const QList<SearchHit> hits = index.find(wordsOf(options), mostFound);
    for (const SearchHit &hit : hits) {
        if (!report.found(QFile::encodeName(hit.url.toLocalFile()), hit.line))
            return ExitStatus::someFailed;
    }
    return hits.isEmpty() ? ExitStatus::someFailed : ExitStatus::done;
}
