// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QVariant>

#include <memory>

/// Where one domain of preferences lies on the disk: its values by key, each a string or a list of
/// strings. All calls block for the disk; any thread, one at a time.
///
/// The domain "velmora" is the program's own.
class SettingsFile
{
public:
    using Values = QHash<QString, QVariant>;
    /// An invalid value takes its key out.
    using Changes = QMap<QString, QVariant>;

    explicit SettingsFile(const QString &domain);
    ~SettingsFile();
    Q_DISABLE_COPY_MOVE(SettingsFile)

    /// The file, for who looks at it or watches it.
    const QString &path() const;

    /// What is stored now. A domain that is not there, or whose place something else has taken
    /// (a pipe, a folder, a link, a huge file), is empty; one that the disk can't tell of just now
    /// is as it was last.
    const Values &read();

    /// Makes what is there already the user's alone, as what is stored anew always is, and clears
    /// away what a killed writer has left.
    void tidy();

    /// Stores the changes beside what is stored already, whole or not at all: whoever reads the
    /// domain finds what was there before or all of it. What has taken the domain's place is set
    /// aside, never lost. False when the disk did not take them.
    bool write(const Changes &changes);

private:
    struct Private;
    std::unique_ptr<Private> m_private;
};
