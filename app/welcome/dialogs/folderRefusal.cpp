// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/folderRefusal.h"

#include <QFileInfo>

std::optional<QString> folderRefusal(const QUrl &folder)
{
    if (!folder.isLocalFile() || !folder.host().isEmpty()) {
        return QStringLiteral("%1 is not on this computer. Velmora can only watch a folder on one "
                              "of its own disks.")
            .arg(folder.toDisplayString(QUrl::PreferLocalFile));
    }
    const QFileInfo entry(folder.toLocalFile());
    if (!entry.exists())
        return QStringLiteral("There is no folder %1.").arg(entry.filePath());
    if (!entry.isDir())
        return QStringLiteral("%1 is not a folder.").arg(entry.filePath());
    if (!entry.isReadable() || !entry.isExecutable())
        return QStringLiteral("You do not have permission to open %1.").arg(entry.filePath());
    return std::nullopt;
}
