// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// The most memory that this process has held since counting began.
namespace PeakMemory
{

/// Restarts counting, and returns what is held now. In bytes.
qint64 startCounting();

/// In bytes.
qint64 most();

/// Sanitizers keep freed memory for themselves.
bool isMeasurable();

} // namespace PeakMemory
