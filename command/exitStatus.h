// SPDX-License-Identifier: MIT
#pragma once

/// The command's exit status. After a signal it is 128 plus the signal's number, as in shells.
namespace ExitStatus
{

constexpr int done = 0;
constexpr int someFailed = 1;
constexpr int wrongUse = 2;
constexpr int signalled = 128;

} // namespace ExitStatus
