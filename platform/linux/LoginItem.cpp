// SPDX-License-Identifier: MIT
#include "platform/LoginItem.h"

#include "filesystem/moveFile.h"
#include "platform/linux/applications/DesktopEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

QString entryName()
{
    return u"/autostart/app.velmora.Velmora.desktop"_s;
}

QString ownEntryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + entryName();
}

/// The entry that an administrator has installed for all users.
std::optional<QString> systemEntryPath()
{
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    folders.removeFirst();
    for (const QString &folder : folders) {
        if (QFileInfo::exists(folder + entryName()))
            return folder + entryName();
    }
    return std::nullopt;
}

/// Whether the entry is meant for the running desktop.
bool isForThisDesktop(const DesktopEntry &entry)
{
    const QStringList onlyIn = entry.list("OnlyShowIn");
    const QStringList notIn = entry.list("NotShowIn");
    for (const QString &desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':')) {
        if (onlyIn.contains(desktop))
            return true;
        if (notIn.contains(desktop))
            return false;
    }
    return onlyIn.isEmpty();
}

bool canBeTried(const QString &program)
{
    return program.isEmpty() || !QStandardPaths::findExecutable(program).isEmpty();
}

/// An update may have replaced the file since this process started from it.
QString ownProgram()
{
    QString path = QCoreApplication::applicationFilePath();
    const QString replaced = u" (deleted)"_s;
    if (path.endsWith(replaced) && !QFileInfo::exists(path))
        path.chop(replaced.size());
    return path;
}

/// Escaped like any string value of a desktop entry.
QString escaped(QString value)
{
    return value.replace(u'\\', u"\\\\"_s);
}

/// A path as a complete command line: quoted as for a shell, percent signs doubled, and the result
/// escaped like any other value. (Some sessions look for the program before they undo the doubling,
/// and find none; no other form of entry helps there.)
QString commandLine(const QString &program)
{
    QString word = u"\""_s;
    for (const QChar character : program) {
        if (QStringView(u"\"`$\\").contains(character))
            word += u'\\';
        word += character;
        if (character == u'%')
            word += u'%';
    }
    return escaped(word + u'"');
}

QByteArray enabledEntry(const QString &program)
{
    const QString entry = u"[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Velmora\n"
                          "Comment=Names and keeps your screenshots at hand\n"
                          "Icon=app.velmora.Velmora\n"
                          "Exec="_s +
                          commandLine(program) + u"\nTryExec="_s + escaped(program) +
                          u"\nTerminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n"
                          "X-KDE-autostart-after=panel\n"_s;
    return entry.toUtf8();
}

QByteArray hidingEntry()
{
    return "[Desktop Entry]\nType=Application\nName=Velmora\nHidden=true\n";
}

/// Renames what has taken the entry's place and is not a file of its own (a pipe, a link that may
/// lead anywhere) to a name that no session starts.
bool setAside(const QString &path)
{
    for (int number = 1;; ++number) {
        const QString aside = path + u".aside-%1"_s.arg(number);
        const std::error_code error =
            moveFile(QUrl::fromLocalFile(path), QUrl::fromLocalFile(aside));
        if (error != std::errc::file_exists)
            return !error;
    }
}

bool isOrdinaryOrMissing(const QString &path)
{
    const QFileInfo info(path);
    return !info.isSymLink() && (info.isFile() || !info.exists());
}

std::optional<QString> write(const QByteArray &content)
{
    const QString path = ownEntryPath();
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return u"The folder %1 could not be made"_s.arg(folder);
    if (!isOrdinaryOrMissing(path) && !setAside(path))
        return u"Something else is in the place of %1"_s.arg(path);
    QSaveFile file(path);
    if (file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.commit())
        return std::nullopt;
    return file.errorString();
}

/// Start at login as an entry in the user's autostart folder, which every desktop reads.
class AutostartLoginItem : public LoginItem
{
public:
    bool isEnabled() const override
    {
        const QString own = ownEntryPath();
        const QString path = QFileInfo::exists(own) ? own : systemEntryPath().value_or(own);
        const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
        return entry && entry->isApplication() && !entry->string("Exec").isEmpty() &&
               entry->boolean("X-GNOME-Autostart-enabled").value_or(true) &&
               isForThisDesktop(*entry) && canBeTried(entry->string("TryExec"));
    }

    std::optional<QString> setEnabled(bool enabled) override
    {
        if (enabled)
            return enable(ownProgram());
        if (systemEntryPath())
            return write(hidingEntry());
        QFile own(ownEntryPath());
        const bool isThere = own.exists() || QFileInfo(own).isSymLink();
        if (!isThere || own.remove())
            return std::nullopt;
        return own.errorString();
    }

private:
    static std::optional<QString> enable(const QString &program)
    {
        if (program.contains(u'\n'))
            return u"No desktop entry can name the program's path"_s;
        return write(enabledEntry(program));
    }
};

} // namespace

std::unique_ptr<LoginItem> makeLoginItem()
{
    return std::make_unique<AutostartLoginItem>();
}
