#include "style/FileIcon.h"

#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

#include <QMimeDatabase>

QIcon fileIcon(const QUrl &file)
{
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(file.toLocalFile(), QMimeDatabase::MatchExtension);
    for (const QString &name : {type.iconName(), type.genericIconName()}) {
        const QIcon icon = QIcon::fromTheme(name);
        if (!icon.isNull())
            return icon;
    }
    return symbolIcon(QStringLiteral("photo"), VelmoraPalette::tertiaryText());
}
