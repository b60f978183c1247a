// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Where the compositor niri saves the screenshots that it takes. Read on each call. Any thread;
/// blocks on the file.
namespace NiriSettings
{

/// The file with that setting.
QString file();

/// The folder of the pattern "screenshot-path", with today's date filled in; niri's default when
/// the file has no such line; absent when screenshots are not saved.
std::optional<QString> folder();

} // namespace NiriSettings
