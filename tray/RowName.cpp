// SPDX-License-Identifier: MIT
#include "tray/RowName.h"

#include "filesystem/FileUrls.h"
#include "naming/ScreenshotNamer.h"
#include "tray/FilenameTextField.h"

#include <utility>

RowName::RowName(FilenameTextField &field, const ScreenshotPointer &screenshot)
    : m_field(field), m_screenshot(screenshot)
{
}

QString RowName::text() const
{
    return m_field.text();
}

void RowName::edited()
{
    m_userEditedFilename = true;
    m_isTyped = true;
    m_screenshot->setNamedByUser();
}

bool RowName::suggest(const QString &name)
{
    if (m_userEditedFilename)
        return false;
    m_field.setText(name);
    return true;
}

std::optional<QString> RowName::takeSuggestion()
{
    const std::optional<QString> name = std::exchange(m_suggestion, std::nullopt);
    return m_userEditedFilename ? std::nullopt : name;
}

std::optional<QString> RowName::beginRename(const QString &text)
{
    if (m_renamingTo == text)
        return std::nullopt;
    m_isTyped = false;
    const QString current = FileUrls::lastPathComponent(m_screenshot->url());
    // Sanitising could shorten the current name, because a counter may have made it longer than a
    // typed name may be.
    const QString name = text == current ? current : ScreenshotNamer::sanitize(text, current);
    if (name == current && !m_renamingTo) {
        m_field.setText(current);
        return std::nullopt;
    }
    m_renamingTo = text;
    return name;
}

void RowName::endRename(const QString &text)
{
    if (m_renamingTo == text)
        m_renamingTo.reset();
}

void RowName::showFilename()
{
    if (!m_isTyped && !m_renamingTo)
        m_field.setText(FileUrls::lastPathComponent(m_screenshot->url()));
}
