// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-search/GnomeSearchProvider.h"

#include "filesystem/FileUrls.h"

#include <QDBusConnection>
#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace
{

QVariantMap metaOf(const FoundResults::Result &result)
{
    QVariantMap meta = {
        {u"id"_s, result.id},
        {u"name"_s, FileUrls::lastPathComponent(result.found.file)},
        {u"description"_s, result.found.line},
    };
    if (result.thumbnail.isEmpty())
        meta.insert(u"gicon"_s, u"image-x-generic"_s);
    else
        meta.insert(u"icon-data"_s, QVariant::fromValue(result.thumbnail));
    return meta;
}

} // namespace

GnomeSearchProvider::GnomeSearchProvider(FoundResults &results) : m_results(results)
{
    qDBusRegisterMetaType<BusImage>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QStringList GnomeSearchProvider::GetInitialResultSet(const QStringList &terms)
{
    setDelayedReply(true);
    m_results.find(terms.join(u' '), [bus = connection(), call = message()](
                                         const QList<FoundResults::Result> &results) {
        QStringList ids;
        for (const FoundResults::Result &result : results)
            ids << result.id;
        bus.send(call.createReply(ids));
    });
    return {};
}

/// More words may lead to another line and another order, so the search starts again.
QStringList GnomeSearchProvider::GetSubsearchResultSet(const QStringList &,
                                                       const QStringList &terms)
{
    return GetInitialResultSet(terms);
}

QList<QVariantMap> GnomeSearchProvider::GetResultMetas(const QStringList &identifiers)
{
    setDelayedReply(true);
    m_results.describe(identifiers, [bus = connection(),
                                     call = message()](const QList<FoundResults::Result> &results) {
        QList<QVariantMap> metas;
        for (const FoundResults::Result &result : results)
            metas << metaOf(result);
        bus.send(call.createReply(QVariant::fromValue(metas)));
    });
    return {};
}

void GnomeSearchProvider::ActivateResult(const QString &identifier, const QStringList &, uint)
{
    if (const std::optional<QUrl> file = m_results.file(identifier))
        Q_EMIT openRequested(*file);
}

void GnomeSearchProvider::LaunchSearch(const QStringList &terms, uint)
{
    Q_EMIT searchRequested(terms.join(u' '));
}
