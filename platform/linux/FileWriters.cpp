// SPDX-License-Identifier: MIT
#include "platform/FileWriters.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>

namespace
{

/// Checks with a read lease, which the kernel grants only while no process has the file open for
/// writing.
class LeasedFileWriters : public FileWriters
{
public:
    Answer writersOf(int descriptor) override
    {
        // A process that opens the file for writing between the two lease calls waits for the
        // second one, and this process gets a signal: by default SIGIO, which kills, whereas SIGURG
        // is ignored.
        if (::fcntl(descriptor, F_SETSIG, SIGURG) != 0)
            return Answer::Unknown;
        if (::fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0) {
            ::fcntl(descriptor, F_SETLEASE, F_UNLCK);
            return Answer::None;
        }
        return errno == EAGAIN ? Answer::Some : Answer::Unknown;
    }
};

} // namespace

std::unique_ptr<FileWriters> makeFileWriters()
{
    return std::make_unique<LeasedFileWriters>();
}
