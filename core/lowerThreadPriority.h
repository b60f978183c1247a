// SPDX-License-Identifier: MIT
#pragma once

/// Lowers the priority of the calling thread below that of threads that a person waits for. It
/// still gets a share of a busy machine. Calling it again changes nothing. If the system refuses,
/// the priority stays as it is.
void lowerThreadPriority();
