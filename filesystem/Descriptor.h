// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <system_error>
#include <unistd.h>
#include <utility>

/// A file descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const { return m_number >= 0; }
    int number() const { return m_number; }

    /// False when the system could not store what was written.
    bool close()
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0;
    }

private:
    int m_number;
};

/// The error that the previous system call left in `errno`.
inline std::error_code lastError()
{
    return {errno, std::generic_category()};
}
