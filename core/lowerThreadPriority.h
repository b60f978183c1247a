#pragma once

/// Makes the calling thread give way to threads that a person waits for. It still gets its share of
/// a busy machine. Calling it again changes nothing; a system that refuses leaves the priority as
/// it is.
void lowerThreadPriority();
