// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchIndex.h"
#include "tests/files/TestFiles.h"

#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

/// An index in a folder of its own, and real files to put into it.
class SearchIndexFixture
{
protected:
    using Place = SearchIndex::Place;

    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
    }

    QString folder() const { return m_data->filePath(u"velmora"_s); }
    QString path() const { return folder() + u"/search.db"_s; }
    QStringList asides() const
    {
        return QDir(folder()).entryList({u"search.db.aside-*"_s},
                                        QDir::AllEntries | QDir::Hidden | QDir::System);
    }

    static FileIdentity identityOf(const QUrl &url)
    {
        return fileIdentity(url.toLocalFile()).value_or(FileIdentity());
    }
    static SearchIndex::Entry entryOf(const QUrl &url, const QString &application = {})
    {
        return {url, identityOf(url), application};
    }
    static QStringList namesOf(const QList<SearchHit> &hits)
    {
        QStringList names;
        for (const SearchHit &hit : hits)
            names << FileUrls::lastPathComponent(hit.url);
        return names;
    }

    /// Adds a screenshot that has already been read.
    QUrl screenshot(SearchIndex &index, const QString &name, const QStringList &lines,
                    const QString &application = {}) const
    {
        const QUrl url = m_files->make(name);
        if (!index.add({entryOf(url, application)}) || !index.setText(identityOf(url), lines))
            qFatal("can't store a screenshot");
        return url;
    }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
};
