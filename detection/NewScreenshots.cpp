// SPDX-License-Identifier: MIT
#include "detection/NewScreenshots.h"

#include "filesystem/FileUrls.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

/// UTF-8 sorts in the order of its code points. Canonically equivalent names get the same key.
QByteArray sortKey(const QUrl &url)
{
    return FileUrls::lastPathComponent(url).normalized(QString::NormalizationForm_C).toUtf8();
}

QList<QUrl> sortedByName(const QList<QUrl> &urls)
{
    std::vector<std::pair<QByteArray, QUrl>> keyed;
    for (const QUrl &url : urls)
        keyed.emplace_back(sortKey(url), url);
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &first, const auto &second) {
        return first.first < second.first;
    });
    QList<QUrl> sorted;
    for (const auto &[key, url] : keyed)
        sorted.append(url);
    return sorted;
}

} // namespace

NewScreenshots::NewScreenshots(FileTime startedAt) : m_startedAt(startedAt) {}

void NewScreenshots::start(const FolderListing::Files &candidates, FileTime cameSince)
{
    m_knownFiles.clear();
    for (const FolderListing::File &file : candidates) {
        if (file.changed < cameSince)
            m_knownFiles.insert(file.url);
    }
}

void NewScreenshots::noteTime(FileTime now)
{
    m_startedAt = std::min(m_startedAt, now);
}

QList<QUrl> NewScreenshots::scan(const FolderListing::Files &candidates)
{
    QSet<QUrl> current;
    QList<QUrl> added;
    for (const FolderListing::File &file : candidates) {
        if (file.modified < m_startedAt - grace)
            continue;
        current.insert(file.url);
        if (!m_knownFiles.contains(file.url) && !m_ignoredFiles.contains(file.url))
            added.append(file.url);
    }
    m_knownFiles = current;
    return sortedByName(added);
}

void NewScreenshots::ignore(const QUrl &url)
{
    const QUrl standardized = FileUrls::standardized(url);
    m_ignoredFiles.insert(standardized);
    m_knownFiles.insert(standardized);
}
