// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The main group of a desktop entry file, as the Desktop Entry Specification lays it out. A value.
class DesktopEntry
{
public:
    /// Absent when the file can't be read, is unreasonably large or has no such group. Any thread;
    /// reads the file.
    static std::optional<DesktopEntry> read(const QString &path);

    /// The value with its escapes undone; empty when the key is missing.
    QString string(const QByteArray &key) const;
    /// The value in the first of the languages that has one, else the untranslated one.
    QString localizedString(const QByteArray &key, const QList<QByteArray> &languages) const;
    QStringList list(const QByteArray &key) const;
    /// Absent when the key is missing or the value is no boolean.
    std::optional<bool> boolean(const QByteArray &key) const;

    /// A launchable application that has not been deleted by its user.
    bool isApplication() const;

private:
    QHash<QByteArray, QByteArray> m_values;
};

/// The user's languages for messages, best first, each with its less exact forms behind it, as
/// the keys of desktop entries write them: "sr_RS@latin", "sr_RS", "sr@latin", "sr". Any thread.
QList<QByteArray> messageLanguages();
