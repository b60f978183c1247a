// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

/// One string of the settings (GSettings) of GNOME and its relatives, read and followed in this
/// process by a thread of its own. Any thread.
class FollowedSetting
{
public:
    struct Name {
        const char *schema;
        const char *key;
    };

    /// @param changed called on the setting's own thread when the value has changed
    FollowedSetting(const Name &name, std::function<void()> changed);
    ~FollowedSetting();

    /// Absent when the schema or the key is not installed, when the value is not a string, and when
    /// the first answer takes longer than a second. Answers from memory.
    std::optional<QString> value() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
