#pragma once

class QCoreApplication;

/// What must be settled before the application object is made: which window system the program
/// uses, how libraries behave, and that none of them writes to the console. Called once, first
/// thing, on the main thread.
void prepareProcess();

/// From now on the system's request that the process end (at log-out, by kill) quits the
/// application as its user would. Called once, on the main thread.
void quitWhenTerminated(QCoreApplication &application);
