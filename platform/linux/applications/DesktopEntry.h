// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/// The main group of a desktop entry file. A value, cheap to copy.
///
/// GLib's GDesktopAppInfo is not used: it ignores an entry whose program is not in the search path,
/// but such a program can have windows all the same.
class DesktopEntry
{
public:
    /// Absent when the file can't be read, is unreasonably large or has no such group. Any thread;
    /// reads the file.
    static std::optional<DesktopEntry> read(const QString &path);

    /// The value with its escapes undone; empty when the key is missing.
    QString string(const char *key) const;
    /// The value in the first of the user's message languages that has one, else the untranslated
    /// value.
    QString localizedString(const char *key) const;
    QStringList list(const char *key) const;
    /// Absent when the key is missing or the value is no boolean.
    std::optional<bool> boolean(const char *key) const;

    /// Whether it is an application that can be launched and that the user has not deleted.
    bool isApplication() const;

private:
    struct Parsed;
    explicit DesktopEntry(std::shared_ptr<const Parsed> parsed) : m_parsed(std::move(parsed)) {}

    std::shared_ptr<const Parsed> m_parsed;
};
