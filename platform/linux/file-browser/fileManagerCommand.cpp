#include "platform/linux/file-browser/fileManagerCommand.h"

std::optional<FileManagerCommand> fileManagerCommand(const QString &desktopEntry, const QUrl &file)
{
    const QString path = file.toLocalFile();
    const QStringList selected = {QStringLiteral("--select"), path};
    if (desktopEntry == u"org.gnome.Nautilus.desktop")
        return FileManagerCommand{QStringLiteral("nautilus"), selected};
    if (desktopEntry == u"org.kde.dolphin.desktop")
        return FileManagerCommand{QStringLiteral("dolphin"), selected};
    if (desktopEntry.startsWith(u"caja"))
        return FileManagerCommand{QStringLiteral("caja"), selected};
    if (desktopEntry == u"nemo.desktop")
        return FileManagerCommand{QStringLiteral("nemo"), {path}};
    return std::nullopt;
}
