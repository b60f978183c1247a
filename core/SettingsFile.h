// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

#include <memory>

/// One domain of preferences on disk: its values by key, each a string or a list of strings. All
/// calls block for the disk. Any thread, but only one at a time.
///
/// The domain "velmora" is the program's own.
class SettingsFile
{
public:
    using Values = QHash<QString, QVariant>;
    /// An invalid value removes its key.
    using Changes = QMap<QString, QVariant>;

    explicit SettingsFile(const QString &domain);
    ~SettingsFile();
    Q_DISABLE_COPY_MOVE(SettingsFile)

    /// The path of the file, for reading or watching it.
    const QString &path() const;

    /// The values that are stored now. Empty if the domain does not exist or something else has its
    /// path (a pipe, a folder, a link, a huge file). If the disk reports an error, the values of
    /// the last successful read.
    const Values &read();

    /// Makes an existing file private to the user, as new files always are, and removes what a
    /// killed writer left behind.
    void tidy();

    /// Adds the changes to what is stored, atomically: a reader finds the old values or all of the
    /// new ones. Something else at the file's path is renamed, never lost. False if the disk
    /// refused.
    bool write(const Changes &changes);

private:
    struct Private;
    std::unique_ptr<Private> m_private;
};
