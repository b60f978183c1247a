// SPDX-License-Identifier: MIT
#include "command/IndexUpdate.h"

#include "command/PictureReader.h"
#include "command/filePaths.h"
#include "filesystem/FileUrls.h"

#include <QFile>

namespace
{

/// Stored together: few enough that the index is not locked for long.
constexpr qsizetype mostAtOnce = 20;

} // namespace

IndexUpdate::~IndexUpdate()
{
    store();
}

void IndexUpdate::add(const QByteArray &path)
{
    const QByteArray absolute = FilePaths::absolute(path);
    const QString text = QFile::decodeName(absolute);
    const std::optional<FileIdentity> file = identityOf(path);
    // The index has no names that are not text.
    if (!file || QFile::encodeName(text) != absolute || !m_index.exists())
        return;
    m_moved.append({FileUrls::standardized(FileUrls::fromPath(text)), *file, {}});
    if (m_moved.size() >= mostAtOnce)
        store();
}

void IndexUpdate::store()
{
    if (!m_moved.isEmpty())
        m_index.renamed(m_moved);
    m_moved.clear();
}
