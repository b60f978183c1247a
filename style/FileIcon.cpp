// SPDX-License-Identifier: MIT
#include "style/FileIcon.h"

#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

#include <QHash>
#include <QMimeDatabase>

using namespace Qt::StringLiterals;

namespace
{

QString themeIconName(const QMimeType &type)
{
    for (const QString &name : {type.iconName(), type.genericIconName()}) {
        if (!QIcon::fromTheme(name).isNull())
            return name;
    }
    return {};
}

/// Empty when the theme has no icon for the type. Qt caches the icons that it has found, but
/// searches all folders of the theme again for each missing one, so each type is looked up only
/// once.
QString knownThemeIconName(const QMimeType &type)
{
    static QString theme;
    static QHash<QString, QString> names;
    if (theme != QIcon::themeName()) {
        theme = QIcon::themeName();
        names.clear();
    }
    const auto known = names.constFind(type.name());
    return known != names.cend() ? *known : *names.insert(type.name(), themeIconName(type));
}

} // namespace

QIcon fileIcon(const QUrl &file)
{
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(file.toLocalFile(), QMimeDatabase::MatchExtension);
    const QString name = knownThemeIconName(type);
    const QIcon icon = name.isEmpty() ? QIcon() : QIcon::fromTheme(name);
    return icon.isNull() ? symbolIcon(u"photo"_s, VelmoraPalette::tertiaryText()) : icon;
}
