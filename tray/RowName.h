// SPDX-License-Identifier: MIT
#pragma once

#include "files/Screenshot.h"

#include <QString>

#include <optional>

class FilenameTextField;

/// The name in a row's field: the file's own, one that the program suggests, or what the user
/// types. Main thread; the field must outlive it.
class RowName
{
public:
    RowName(FilenameTextField &field, const ScreenshotPointer &screenshot);

    QString text() const;

    /// The user has changed the text. From now on, suggestions are not used.
    void edited();

    /// Whether the field contains a name that the user has typed but not committed.
    bool isTyped() const { return m_isTyped; }
    void forgetTyped() { m_isTyped = false; }

    /// Shows a suggestion. False if the user has edited the name.
    bool suggest(const QString &name);

    /// A suggestion waits here until other programs have read a dragged file, or the row is about
    /// to be removed.
    void keepSuggestion(const QString &name) { m_suggestion = name; }
    void forgetSuggestion() { m_suggestion.reset(); }

    /// The suggestion that was kept, unless the user has edited the name since.
    std::optional<QString> takeSuggestion();

    /// @return the name to give the file for this text; nothing if it has that name or is already
    /// being renamed to it. With a name, the rename begins and must be ended.
    std::optional<QString> beginRename(const QString &text);
    void endRename(const QString &text);
    bool isRenaming() const { return m_renamingTo.has_value(); }

    /// Shows the file's name, but keeps a name that the user is typing or that the file is being
    /// renamed to.
    void showFilename();

private:
    FilenameTextField &m_field;
    const ScreenshotPointer m_screenshot;
    bool m_userEditedFilename = false;
    bool m_isTyped = false;
    std::optional<QString> m_suggestion;
    /// The text that the file is being renamed to.
    std::optional<QString> m_renamingTo;
};
