// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QObject>

/// The kernel's table of what is mounted where. Reading it never waits for a disk, and can be done
/// on any thread; changed() comes on the one that made the object.
class MountTable : public QObject
{
    Q_OBJECT
public:
    /// By path, the oldest first: each entry is different from those before and after.
    using Mounts = QHash<QByteArray, QByteArrayList>;

    MountTable();
    ~MountTable() override;

    bool isOpen() const { return m_table >= 0; }
    Mounts read() const;

Q_SIGNALS:
    /// Something was mounted or unmounted, anywhere on this machine.
    void changed();

private:
    int m_table = -1;
};
