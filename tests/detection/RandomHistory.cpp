// SPDX-License-Identifier: MIT
#include "tests/detection/RandomHistory.h"

#include "tests/detection/FolderActions.h"

#include <QFile>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;
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
    , m_parent(m_directory.path() + u"/parent"_s)
    , m_outside(m_directory.path() + u"/outside"_s)
{
    QDir().mkpath(m_outside);
    QDir().mkpath(m_directory.path() + u"/real1/Shots"_s);
    QDir().mkpath(m_directory.path() + u"/real2/Shots"_s);
    FolderActions::symlink(m_directory.path() + u"/real1"_s, m_parent);
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
        return u"write "_s + one;
    case 2:
        append(inside(one));
        return u"append to "_s + one;
    case 3:
        removeEntry(inside(one));
        return u"remove "_s + one;
    case 4:
        FolderActions::rename(inside(one), inside(two));
        return u"rename "_s + one + u" to "_s + two;
    case 5:
        FolderActions::rename(inside(one), outside(two));
        return u"move out "_s + one + u" to "_s + two;
    case 6:
        write(outside(one));
        FolderActions::setDate(outside(one), anyDate(now));
        FolderActions::rename(outside(one), inside(two));
        return u"move in "_s + one + u" to "_s + two;
    case 7:
        FolderActions::link(inside(one), inside(two));
        return u"link "_s + one + u" to "_s + two;
    case 8:
        write(outside(one));
        FolderActions::setDate(outside(one), anyDate(now));
        FolderActions::link(outside(one), inside(two));
        return u"link in "_s + one + u" to "_s + two;
    case 9:
        append(outside(one));
        return u"append outside to "_s + one;
    case 10:
        FolderActions::setDate(inside(one), anyDate(now));
        return u"date "_s + one;
    case 11:
        QDir().mkdir(inside(one));
        FolderActions::setDate(inside(one), anyDate(now));
        return u"make folder "_s + one;
    case 12:
        write(inside(one) + u'/' + two);
        return u"write inside "_s + one;
    default:
        FolderActions::symlink(random(2) ? inside(two) : outside(two), inside(one));
        return u"symbolic link "_s + one;
    }
}

QString RandomHistory::actOnFolder(int kind)
{
    const QString away = m_directory.path() + u"/away%1"_s.arg(random(2));
    switch (kind) {
    case 0:
        QDir(folder()).removeRecursively();
        return u"remove the folder"_s;
    case 1:
    case 2:
        QDir().mkdir(folder());
        return u"make the folder"_s;
    case 3:
        FolderActions::rename(folder(), away);
        return u"move the folder to "_s + away;
    case 4:
        FolderActions::rename(away, folder());
        return u"move the folder back from "_s + away;
    case 5:
        if (FolderActions::rename(folder(), away) && FolderActions::rename(away, folder()))
            return u"move the folder away and back"_s;
        return u"move no folder"_s;
    default:
        QFile::remove(m_parent);
        FolderActions::symlink(m_directory.path() + u"/real%1"_s.arg(random(2) + 1), m_parent);
        return u"lead the link elsewhere"_s;
    }
}
