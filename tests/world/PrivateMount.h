// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <sched.h>
#include <sys/mount.h>

using namespace Qt::StringLiterals;

/// A file system in memory that only this program sees.
class PrivateMount
{
public:
    /// The message of a test that can't have one.
    static constexpr char unavailable[] = "this user may not mount file systems";

    /// @param options as of mount(8), for instance "size=64k"
    explicit PrivateMount(const QByteArray &options)
    {
        m_isMounted =
            seclude() && ::mount("tmpfs", path().constData(), "tmpfs", 0, options.constData()) == 0;
    }
    ~PrivateMount()
    {
        if (m_isMounted)
            ::umount2(path().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(PrivateMount)

    explicit operator bool() const { return m_isMounted; }
    QString folder() const { return m_place.path(); }
    QString filePath(const QString &name) const { return m_place.filePath(name); }

    /// Writes until not a single byte more fits.
    void fill() const
    {
        QFile file(filePath(u"filling"_s));
        file.open(QFile::WriteOnly | QFile::Unbuffered);
        while (file.write(QByteArray(4096, 'x')) > 0) {
        }
    }

    void setReadOnly(bool readOnly) const
    {
        const unsigned long flags = readOnly ? MS_REMOUNT | MS_RDONLY : MS_REMOUNT;
        ::mount(nullptr, path().constData(), nullptr, flags, nullptr);
    }

private:
    QByteArray path() const { return QFile::encodeName(m_place.path()); }

    static bool seclude()
    {
        static const bool secluded =
            ::unshare(CLONE_NEWNS) == 0 &&
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        return secluded;
    }

    QTemporaryDir m_place;
    bool m_isMounted = false;
};
