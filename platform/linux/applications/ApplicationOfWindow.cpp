// SPDX-License-Identifier: MIT
#include "platform/linux/applications/ApplicationOfWindow.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

/// The instance or class of their windows, in lower case.
constexpr QStringView screenshotTools[] = {
    u"spectacle",
    u"org.kde.spectacle",
    u"flameshot",
    u"org.flameshot.flameshot",
    u"ksnip",
    u"org.ksnip.ksnip",
    u"gnome-screenshot",
    u"org.gnome.screenshot",
    u"xfce4-screenshooter",
    u"mate-screenshot",
    u"io.elementary.screenshot",
    u"screengrab",
    u"shutter",
    u"be.alexandervanhee.gradia",
    u"satty",
    u"com.gabm.satty",
    u"swappy",
    u"slurp",
};
constexpr QStringView desktopsAndLaunchers[] = {
    u"plasmashell", u"gnome-shell", u"xfdesktop", u"xfce4-panel", u"nemo-desktop",
    u"polybar",     u"waybar",      u"krunner",   u"rofi",        u"wofi",
};
constexpr QStringView ownNames[] = {u"velmora", u"app.velmora.velmora"};

/// No application has a longer name; a longer one is malicious.
constexpr qsizetype longestName = 100;

/// At most this many bytes are read of what a process shows about itself.
constexpr qint64 mostBytes = 1 << 18;

bool isToolOrShell(const QString &name)
{
    const QString lower = name.toLower();
    const auto names = [&](const auto &list) {
        return std::find(std::begin(list), std::end(list), lower) != std::end(list);
    };
    return names(screenshotTools) || names(desktopsAndLaunchers) || names(ownNames) ||
           lower.startsWith(u"xdg-desktop-portal-");
}

/// The id of the sandbox that the process runs in.
QString sandboxId(qint64 processId)
{
    QFile info(u"/proc/%1/root/.flatpak-info"_s.arg(processId));
    if (processId <= 0 || !info.open(QFile::ReadOnly))
        return {};
    bool inGroup = false;
    for (const QByteArray &line : info.read(mostBytes).split('\n')) {
        if (line.startsWith('['))
            inGroup = line == "[Application]";
        else if (inGroup && line.startsWith("name="))
            return QString::fromUtf8(line.mid(5)).trimmed();
    }
    return {};
}

/// The desktop entry that the process was launched from, as desktops record it in its environment.
/// Child processes inherit the record, so it counts only when it names this very process.
QString launchedEntry(qint64 processId)
{
    QFile file(u"/proc/%1/environ"_s.arg(processId));
    if (processId <= 0 || !file.open(QFile::ReadOnly))
        return {};
    QByteArray path;
    QByteArray forProcess;
    for (const QByteArray &variable : file.read(mostBytes).split('\0')) {
        if (variable.startsWith("GIO_LAUNCHED_DESKTOP_FILE="))
            path = variable.mid(variable.indexOf('=') + 1);
        else if (variable.startsWith("GIO_LAUNCHED_DESKTOP_FILE_PID="))
            forProcess = variable.mid(variable.indexOf('=') + 1);
    }
    return forProcess == QByteArray::number(processId) ? QString::fromUtf8(path) : QString();
}

/// An id may be recorded with or without its suffix, or as the path of the entry.
QString bareId(const QString &noted)
{
    const QString name = QFileInfo(noted).fileName();
    const QString suffix = u".desktop"_s;
    return name.endsWith(suffix) ? name.chopped(suffix.size()) : name;
}

std::optional<QString> entryIdOf(const FocusedWindow &window, const DesktopEntries &entries)
{
    const QStringList names = {window.instance, window.windowClass};
    for (const QString &name : names) {
        if (const auto id = entries.claimant(name); id && !name.isEmpty())
            return id;
    }
    for (const QString &name : names) {
        for (const QString &id : {name, name.toLower().replace(u' ', u'-')}) {
            if (entries.contains(id))
                return id;
        }
    }
    const QStringList noted = QStringList{sandboxId(window.processId)} + window.notedIds +
                              QStringList{launchedEntry(window.processId)};
    for (const QString &note : noted) {
        if (const QString id = bareId(note); entries.contains(id))
            return id;
    }
    for (const QString &name : {window.windowClass, window.instance}) {
        if (const auto id = entries.resembling(name); id && !name.isEmpty())
            return id;
    }
    return std::nullopt;
}

QString withFirstLetterRaised(const QString &name)
{
    return name.left(1).toUpper() + name.mid(1);
}

} // namespace

bool isWorkingWindow(const FocusedWindow &window)
{
    if (!window.isOrdinary || window.processId == QCoreApplication::applicationPid())
        return false;
    if (window.instance.isEmpty() && window.windowClass.isEmpty())
        return false;
    if (window.instance.size() > longestName || window.windowClass.size() > longestName)
        return false;
    return !isToolOrShell(window.instance) && !isToolOrShell(window.windowClass);
}

Application applicationOf(const FocusedWindow &window, const DesktopEntries &entries)
{
    if (const std::optional<QString> id = entryIdOf(window, entries)) {
        const std::optional<DesktopEntry> entry = entries.entry(*id);
        const QString name = entry ? entry->localizedString("Name") : QString();
        if (!name.isEmpty())
            return {name, id};
    }
    const QString &name = window.windowClass.isEmpty() ? window.instance : window.windowClass;
    return {withFirstLetterRaised(name), std::nullopt};
}
