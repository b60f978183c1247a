// SPDX-License-Identifier: MIT
#include "imaging/HeldScreenshot.h"

#include <QDirIterator>
#include <QFileInfo>

std::shared_ptr<HeldScreenshot> HeldScreenshot::hold(const QUrl &file, const OpenCount &openCount)
{
    const QString path = file.toLocalFile();
    const std::optional<FileIdentity> identity = fileIdentity(path);
    if (!identity)
        return nullptr;
    return std::shared_ptr<HeldScreenshot>(new HeldScreenshot(path, *identity, openCount));
}

HeldScreenshot::HeldScreenshot(const QString &path, const FileIdentity &identity,
                               const OpenCount &openCount)
    : m_identity(identity)
    , m_firstPath(path)
    , m_openCount(openCount)
    , m_current(std::make_shared<HeldIdentity>(identity))
    , m_path(path)
{
    if (m_openCount->fetch_add(1) < maximumOpen)
        m_open = openIfSame(m_path);
}

HeldScreenshot::~HeldScreenshot()
{
    m_openCount->fetch_sub(1);
}

std::shared_ptr<OpenFile> HeldScreenshot::open() const
{
    const std::lock_guard lock(m_mutex);
    if (m_open && !m_open->isNameless())
        return m_open;
    if (!m_open) {
        if (std::shared_ptr<OpenFile> file = openInFolder())
            return file;
    }
    std::shared_ptr<OpenFile> successor = OpenFile::open(m_firstPath);
    const std::optional<FileIdentity> identity = successor ? successor->identity() : std::nullopt;
    if (!identity)
        return m_open;
    m_current->set(*identity);
    m_path = m_firstPath;
    if (m_open)
        m_open = successor;
    return successor;
}

std::shared_ptr<OpenFile> HeldScreenshot::openInFolder() const
{
    if (std::shared_ptr<OpenFile> file = openIfSame(m_path))
        return file;
    QDirIterator entries(QFileInfo(m_path).path(), QDir::Files | QDir::Hidden);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (std::shared_ptr<OpenFile> file = openIfSame(path)) {
            m_path = path;
            return file;
        }
    }
    return nullptr;
}

std::shared_ptr<OpenFile> HeldScreenshot::openIfSame(const QString &path) const
{
    const FileIdentity current = m_current->current();
    const std::optional<FileIdentity> standing = fileIdentity(path);
    if (!standing || !standing->sameFile(current))
        return nullptr;
    std::shared_ptr<OpenFile> file = OpenFile::open(path);
    const std::optional<FileIdentity> opened = file ? file->identity() : std::nullopt;
    return opened && opened->sameFile(current) ? file : nullptr;
}
