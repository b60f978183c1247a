// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>
#include <string_view>

/// Raw file names as listings of folders give them. Any thread.
namespace ImageNames
{

/// Whether the file is not hidden and has one of `extensions` (which are in lower case), ignoring
/// case.
bool isVisible(std::string_view name, std::span<const std::string_view> extensions);

/// The name as text; absent when it is not valid UTF-8, because no URL can hold it then.
std::optional<QString> decoded(const QByteArray &name);

} // namespace ImageNames
