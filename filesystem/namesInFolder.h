// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

/// The names of a folder's entries, sorted by their bytes; nothing, with `errno` set, if it cannot
/// be read.
std::optional<std::vector<QByteArray>> namesInFolder(const QByteArray &folder);
