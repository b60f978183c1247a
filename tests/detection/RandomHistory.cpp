// SPDX-License-Identifier: MIT
#include "tests/detection/RandomHistory.h"

#include "tests/detection/FolderActions.h"

#include <QFile>
#include <QFileInfo>

#include <array>

using namespace std::chrono_literals;

namespace
{

void append(const QString &path)
{
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::Append))
        file.write("more");
}

void removeEntry(const QString &path)
{
    if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

void write(const QString &path)
{
    if (!QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
        FolderActions::write(path);
}

} // namespace

RandomHistory::RandomHistory(unsigned int seed)
    : m_random(seed)
    , m_parent(m_directory.path() + QStringLiteral("/parent"))
    , m_outside(m_directory.path() + QStringLiteral("/outside"))
{
    QDir().mkpath(m_outside);
    QDir().mkpath(m_directory.path() + QStringLiteral("/real1/Shots"));
    QDir().mkpath(m_directory.path() + QStringLiteral("/real2/Shots"));
    FolderActions::symlink(m_directory.path() + QStringLiteral("/real1"), m_parent);
}

int RandomHistory::random(int below)
{
    return std::uniform_int_distribution<int>(0, below - 1)(m_random);
}

QString RandomHistory::act(FileTime now)
{
    return random(30) == 0 ? actOnFolder(random(7)) : actOnEntry(random(14), now);
}

QString RandomHistory::anyName()
{
    const std::array names = {"a.png", "b.PNG",      "c.jpg",   "d.tiff", "e.tif",
                              "f.txt", ".g.png",     "h.heic",  "i.jpeg", "j.png",
                              "k.png", "folder.png", "#12.png", "l",      "m é.png"};
    return QString::fromUtf8(names[static_cast<size_t>(random(static_cast<int>(names.size())))]);
}

/// Many dates are close to the limit of what counts as recent.
FileTime RandomHistory::anyDate(FileTime now)
{
    switch (random(4)) {
    case 0:
        return now - 180s + std::chrono::nanoseconds(random(3) - 1);
    case 1:
        return now + 1h;
    default:
        return now - std::chrono::seconds(random(400));
    }
}

QString RandomHistory::actOnEntry(int kind, FileTime now)
{
    const QString one = anyName();
    const QString two = anyName();
    switch (kind) {
    case 0:
    case 1:
        write(inside(one));
        return QStringLiteral("write ") + one;
    case 2:
        append(inside(one));
        return QStringLiteral("append to ") + one;
    case 3:
        removeEntry(inside(one));
        return QStringLiteral("remove ") + one;
    case 4:
        FolderActions::rename(inside(one), inside(two));
        return QStringLiteral("rename ") + one + QStringLiteral(" to ") + two;
    case 5:
        FolderActions::rename(inside(one), outside(two));
        return QStringLiteral("move out ") + one + QStringLiteral(" to ") + two;
    case 6:
        write(outside(one));
        FolderActions::setDate(outside(one), anyDate(now));
        FolderActions::rename(outside(one), inside(two));
        return QStringLiteral("move in ") + one + QStringLiteral(" to ") + two;
    case 7:
        FolderActions::link(inside(one), inside(two));
        return QStringLiteral("link ") + one + QStringLiteral(" to ") + two;
    case 8:
        write(outside(one));
        FolderActions::setDate(outside(one), anyDate(now));
        FolderActions::link(outside(one), inside(two));
        return QStringLiteral("link in ") + one + QStringLiteral(" to ") + two;
    case 9:
        append(outside(one));
        return QStringLiteral("append outside to ") + one;
    case 10:
        FolderActions::setDate(inside(one), anyDate(now));
        return QStringLiteral("date ") + one;
    case 11:
        QDir().mkdir(inside(one));
        FolderActions::setDate(inside(one), anyDate(now));
        return QStringLiteral("make folder ") + one;
    case 12:
        write(inside(one) + u'/' + two);
        return QStringLiteral("write inside ") + one;
    default:
        FolderActions::symlink(random(2) ? inside(two) : outside(two), inside(one));
        return QStringLiteral("symbolic link ") + one;
    }
}

QString RandomHistory::actOnFolder(int kind)
{
    const QString away = m_directory.path() + QStringLiteral("/away%1").arg(random(2));
    switch (kind) {
    case 0:
        QDir(folder()).removeRecursively();
        return QStringLiteral("remove the folder");
    case 1:
    case 2:
        QDir().mkdir(folder());
        return QStringLiteral("make the folder");
    case 3:
        FolderActions::rename(folder(), away);
        return QStringLiteral("move the folder to ") + away;
    case 4:
        FolderActions::rename(away, folder());
        return QStringLiteral("move the folder back from ") + away;
    case 5:
        if (FolderActions::rename(folder(), away) && FolderActions::rename(away, folder()))
            return QStringLiteral("move the folder away and back");
        return QStringLiteral("move no folder");
    default:
        QFile::remove(m_parent);
        FolderActions::symlink(m_directory.path() + QStringLiteral("/real%1").arg(random(2) + 1),
                               m_parent);
        return QStringLiteral("lead the link elsewhere");
    }
}
