// SPDX-License-Identifier: MIT
#pragma once

/// What the command ends with. After a signal it is 128 and the signal's number, as shells have it.
namespace ExitStatus
{

constexpr int done = 0;
constexpr int someFailed = 1;
constexpr int wrongUse = 2;
constexpr int signalled = 128;

} // namespace ExitStatus
