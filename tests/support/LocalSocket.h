#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

namespace portolan {

/// A TCP socket of this process on a loopback or any address, with a port of the kernel's choice.
class LocalSocket
{
public:
    /// Nothing listens at its port and, as long as this lives, nothing can.
    [[nodiscard]] static LocalSocket bound(const std::string &address);
    /// Connections succeed and are never accepted: silence without a thread.
    [[nodiscard]] static LocalSocket listening(const std::string &address);
    [[nodiscard]] static LocalSocket connectedTo(const LocalSocket &server);

    ~LocalSocket();
    LocalSocket(LocalSocket &&other) noexcept;
    LocalSocket &operator=(LocalSocket &&) = delete;

    [[nodiscard]] int descriptor() const { return m_descriptor; }
    [[nodiscard]] ino_t inode() const;
    [[nodiscard]] std::uint16_t port() const;

private:
    explicit LocalSocket(int family);

    int m_descriptor;
};

} // namespace portolan
