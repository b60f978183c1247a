// SPDX-License-Identifier: MIT
#pragma once

class QCoreApplication;

/// Sets what must be set before the application object exists: which window system the program
/// uses, how libraries behave, and that none of them writes to the console. Call it once, at the
/// very start, on the main thread.
void prepareProcess();

/// Makes the application quit in the ordinary way when the system asks the process to end (at
/// logout, by kill). Call it once, on the main thread.
void quitWhenTerminated(QCoreApplication &application);
