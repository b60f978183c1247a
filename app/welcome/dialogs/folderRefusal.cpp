// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/folderRefusal.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

std::optional<QString> folderRefusal(const QUrl &folder)
{
    if (!folder.isLocalFile() || !folder.host().isEmpty()) {
        return u"%1 is not on this computer. Velmora can only watch a folder on one "
               "of its own disks."_s.arg(folder.toDisplayString(QUrl::PreferLocalFile));
    }
    const QFileInfo entry(folder.toLocalFile());
    if (!entry.exists())
        return u"There is no folder %1."_s.arg(entry.filePath());
    if (!entry.isDir())
        return u"%1 is not a folder."_s.arg(entry.filePath());
    if (!entry.isReadable() || !entry.isExecutable())
        return u"You do not have permission to open %1."_s.arg(entry.filePath());
    return std::nullopt;
}
