// SPDX-License-Identifier: MIT
#include "search/NameSearch.h"

#include "filesystem/FileUrls.h"
#include "search/searchTerms.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace
{

/// A file that was added or removed is seen this late.
constexpr auto listingLifetime = 3s;

} // namespace

QList<SearchHit> NameSearch::find(const QUrl &folder, const QString &words, int limit)
{
    const QStringList terms = SearchTerms::ofQuery(words);
    if (terms.isEmpty())
        return {};
    refresh(folder);
    QList<SearchHit> hits;
    for (const Name &name : std::as_const(m_names)) {
        if (hits.size() == limit)
            break;
        const bool isHit = std::all_of(terms.begin(), terms.end(), [&name](const QString &term) {
            return name.indexed.contains(u' ' + term);
        });
        if (isHit && FileUrls::exists(name.url))
            hits.append({name.url, {}});
    }
    return hits;
}

void NameSearch::refresh(const QUrl &folder)
{
    const auto now = std::chrono::steady_clock::now();
    if (folder == m_folder && now - m_listedAt < listingLifetime)
        return;
    m_folder = folder;
    m_listedAt = now;
    m_names.clear();
    for (const QUrl &url : m_list(folder).value_or(QList<QUrl>())) {
        const QString name = FileUrls::baseName(FileUrls::lastPathComponent(url));
        m_names.append({url, u' ' + SearchTerms::indexed(name)});
    }
}
