// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

/// The names of what stands in a folder, sorted by their bytes; nothing, and `errno`, when it can't
/// be read.
std::optional<std::vector<QByteArray>> namesInFolder(const QByteArray &folder);
