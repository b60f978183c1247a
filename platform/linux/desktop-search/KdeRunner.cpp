// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-search/KdeRunner.h"

#include "filesystem/FileUrls.h"
#include "platform/SystemWords.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace
{

/// A single letter says too little to add results to all the desktop's others.
constexpr qsizetype shortestQuery = 2;

/// "Possible match" in the grades that the desktop's runners use.
constexpr int possibleMatch = 30;
constexpr double bestRelevance = 0.6;
constexpr double relevanceStep = 0.02;

QString revealAction()
{
    return u"reveal"_s;
}

RunnerMatch matchOf(const FoundResults::Result &result, int place)
{
    RunnerMatch match;
    match.id = result.id;
    match.text = FileUrls::lastPathComponent(result.found.file);
    match.icon = u"image-x-generic"_s;
    match.kind = possibleMatch;
    match.relevance = bestRelevance - relevanceStep * place;
    match.properties = {
        {u"category"_s, u"Screenshots"_s},
        {u"subtext"_s, result.found.line},
        {u"urls"_s, QStringList{result.id}},
    };
    if (!result.thumbnail.isEmpty())
        match.properties.insert(u"icon-data"_s, QVariant::fromValue(result.thumbnail));
    return match;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << match.icon << match.kind << match.relevance
             << match.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text >> match.icon >> match.kind >> match.relevance >>
        match.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action)
{
    argument.beginStructure();
    argument << action.id << action.text << action.icon;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.text >> action.icon;
    argument.endStructure();
    return argument;
}

KdeRunner::KdeRunner(FoundResults &results) : m_results(results)
{
    qDBusRegisterMetaType<BusImage>();
    qDBusRegisterMetaType<RunnerMatch>();
    qDBusRegisterMetaType<QList<RunnerMatch>>();
    qDBusRegisterMetaType<RunnerAction>();
    qDBusRegisterMetaType<QList<RunnerAction>>();
}

QList<RunnerAction> KdeRunner::Actions()
{
    return {{revealAction(), SystemWords::reveal.here(), u"document-open-folder"_s}};
}

QList<RunnerMatch> KdeRunner::Match(const QString &query)
{
    if (query.trimmed().size() < shortestQuery)
        return {};
    setDelayedReply(true);
    using Results = QList<FoundResults::Result>;
    const auto reply = [bus = connection(), call = message()](const Results &results) {
        QList<RunnerMatch> matches;
        for (const FoundResults::Result &result : results)
            matches << matchOf(result, int(matches.size()));
        bus.send(call.createReply(QVariant::fromValue(matches)));
    };
    m_results.find(query, [self = QPointer(this), reply](const Results &found) {
        if (!self)
            return reply({});
        QStringList ids;
        for (const FoundResults::Result &result : found)
            ids << result.id;
        self->m_results.describe(ids, reply);
    });
    return {};
}

void KdeRunner::Run(const QString &matchId, const QString &actionId)
{
    const std::optional<QUrl> file = m_results.file(matchId);
    if (!file)
        return;
    if (actionId == revealAction())
        Q_EMIT revealRequested(*file);
    else
        Q_EMIT openRequested(*file);
}
