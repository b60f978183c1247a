// SPDX-License-Identifier: MIT
#include "platform/linux/file-browser/FileManager.h"

#include "platform/linux/freedesktop/KeyFile.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

/// The lists of default applications, by precedence: the lists for the running desktop come before
/// the general one of the same folder.
QStringList listsOfDefaults()
{
    QStringList names;
    for (const QString &desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':'))
        if (!desktop.isEmpty())
            names += desktop.toLower() + u"-mimeapps.list"_s;
    names += u"mimeapps.list"_s;
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    folders += QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    QStringList lists;
    for (const QString &folder : std::as_const(folders))
        for (const QString &name : std::as_const(names))
            lists += folder + u'/' + name;
    return lists;
}

/// The first entry under that key that is installed.
std::optional<QString> installed(const QString &list, const QByteArray &group)
{
    const QString entries = KeyFile::value(list, group, "inode/directory").value_or(QString());
    for (const QString &entry : entries.split(u';', Qt::SkipEmptyParts)) {
        const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry);
        if (!path.isEmpty())
            return entry;
    }
    return std::nullopt;
}

} // namespace

std::optional<FileManager> fileManager(const QString &desktopEntry)
{
    if (desktopEntry == u"org.gnome.Nautilus.desktop")
        return FileManager{u"org.gnome.Nautilus"_s, u"nautilus"_s, {u"--select"_s}};
    // Each of its windows has its own bus name.
    if (desktopEntry == u"org.kde.dolphin.desktop")
        return FileManager{{}, u"dolphin"_s, {u"--select"_s}};
    if (desktopEntry.startsWith(u"caja"))
        return FileManager{u"org.mate.Caja"_s, u"caja"_s, {u"--select"_s}};
    if (desktopEntry == u"nemo.desktop")
        return FileManager{u"org.Nemo"_s, u"nemo"_s, {}};
    if (desktopEntry.startsWith(u"thunar", Qt::CaseInsensitive))
        return FileManager{u"org.xfce.Thunar"_s, {}, {}};
    if (desktopEntry == u"io.elementary.files.desktop")
        return FileManager{u"io.elementary.files"_s, {}, {}};
    return std::nullopt;
}

std::optional<QString> defaultFileManager()
{
    const QStringList lists = listsOfDefaults();
    for (const QByteArray &group : {"Default Applications"_ba, "Added Associations"_ba})
        for (const QString &list : lists)
            if (const std::optional<QString> entry = installed(list, group))
                return entry;
    for (const QString &folder :
         QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        if (const auto entry = installed(folder + u"/mimeinfo.cache"_s, "MIME Cache"))
            return entry;
    return std::nullopt;
}
