// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

namespace portolan {

/// Owns one file descriptor, or none (-1).
class FileDescriptor
{
public:
    constexpr FileDescriptor() = default;
    constexpr explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {}
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_descriptor(other.release())
    {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
    void close()
    {
        if (isOpen())
            ::close(release());
    }

private:
    int m_descriptor = -1;
};

} // namespace portolan
