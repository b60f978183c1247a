// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Where the compositor niri saves the screenshots that it takes. Read afresh on every call. Any
/// thread; blocks for the file.
namespace NiriSettings
{

/// The file that says so.
QString file();

/// The folder of the pattern "screenshot-path", with today's date where it stands in it; niri's own
/// where the file has no such line; absent where screenshots are not saved.
std::optional<QString> folder();

} // namespace NiriSettings
