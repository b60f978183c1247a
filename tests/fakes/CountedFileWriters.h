// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileWriters.h"

#include <atomic>
#include <memory>

/// The real answers, counted, or always "Unknown". Each attempt to read a file begins with one.
class CountedFileWriters : public FileWriters
{
public:
    Answer writersOf(int descriptor) override
    {
        const Answer answer = unknown ? Answer::Unknown : m_real->writersOf(descriptor);
        ++asked;
        return answer;
    }

    std::atomic_bool unknown = false;
    std::atomic_int asked = 0;

private:
    std::unique_ptr<FileWriters> m_real = makeFileWriters();
};
