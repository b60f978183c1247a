// SPDX-License-Identifier: MIT
#include "core/SettingsFile.h"

#include "core/IniText.h"
#include "core/linux/PrivateFolder.h"
#include "core/readSmallFile.h"

#include <QFile>
#include <QStandardPaths>

#include <chrono>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

QString folderPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/velmora"_s;
}

/// Distinguishes two states of a file. File systems keep time in steps of some milliseconds: a file
/// that changed just before it was read may change again without getting a new date.
class Stamp
{
public:
    bool operator==(const Stamp &) const = default;

    static Stamp of(const QString &path)
    {
        struct stat status = {};
        Stamp stamp;
        if (::lstat(QFile::encodeName(path).constData(), &status) == 0) {
            stamp.m_device = status.st_dev;
            stamp.m_serial = status.st_ino;
            stamp.m_size = status.st_size;
            stamp.m_modified = nanoseconds(status.st_mtim);
            stamp.m_changed = nanoseconds(status.st_ctim);
        }
        return stamp;
    }

    bool isOld() const
    {
        constexpr std::chrono::nanoseconds coarsestStep = 100ms;
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        return now - m_changed > coarsestStep;
    }

private:
    static std::chrono::nanoseconds nanoseconds(const timespec &time)
    {
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    dev_t m_device = 0;
    ino_t m_serial = 0;
    off_t m_size = -1;
    std::chrono::nanoseconds m_modified{};
    std::chrono::nanoseconds m_changed{};
};

} // namespace

struct SettingsFile::Private {
    QString name;
    QString path;
    PrivateFolder folder;
    Values values;
    Stamp stamp;
    bool mustRead = true;

    bool isCurrent() const { return !mustRead && Stamp::of(path) == stamp; }
};

SettingsFile::SettingsFile(const QString &domain)
    : m_private(new Private{domain + u".conf"_s,
                            folderPath() + u'/' + domain + u".conf"_s,
                            PrivateFolder(folderPath()),
                            {},
                            {}})
{
}

SettingsFile::~SettingsFile() = default;

const QString &SettingsFile::path() const
{
    return m_private->path;
}

const SettingsFile::Values &SettingsFile::read()
{
    if (m_private->isCurrent())
        return m_private->values;
    const Stamp before = Stamp::of(m_private->path);
    const SmallFile file = readSmallFile(m_private->path, Links::Refuse);
    if (file.state != SmallFile::State::Failed) {
        m_private->values = IniText::values(file.content);
        m_private->stamp = before;
        m_private->mustRead = !before.isOld();
    }
    return m_private->values;
}

void SettingsFile::tidy()
{
    m_private->folder.tidy(m_private->name);
}

bool SettingsFile::write(const Changes &changes)
{
    if (!m_private->folder.make())
        return false;
    const PrivateFolder::Lock lock(m_private->folder);
    const SmallFile file = readSmallFile(m_private->path, Links::Refuse);
    if (file.state == SmallFile::State::Failed)
        return false;
    const QByteArray text = IniText::changed(file.content, changes);
    if (file.state == SmallFile::State::Read && text == file.content)
        return true;
    if (file.state == SmallFile::State::Unfit && !m_private->folder.setAside(m_private->name))
        return false;
    m_private->mustRead = true;
    return m_private->folder.replace(m_private->name, text);
}
