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
    /// What is mounted at each path, the oldest first: its device, for instance, and the folder of
    /// it that is shown there. Only to be compared.
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
