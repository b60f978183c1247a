// SPDX-License-Identifier: MIT
#pragma once

class QCoreApplication;

/// Sets what must be set before the application object exists: which window system the program
/// uses, how libraries behave, and that none of them writes to the console. Called once, at the
/// very start, on the main thread.
void prepareProcess();

/// From now on the application quits in the ordinary way when the system asks the process to end
/// (at logout, by kill). Called once, on the main thread.
void quitWhenTerminated(QCoreApplication &application);
