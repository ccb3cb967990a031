// SPDX-License-Identifier: MIT
#include "FolderAnswers.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace portolan {

namespace {

/// A buffered connection, in both directions.
class Connection
{
public:
    explicit Connection(int socket)
        : m_socket(socket)
    {}

    /// The next `size` bytes, which stay valid until the next call. Flushes the output before it waits. Null
    /// at the end of the connection.
    const char *receive(size_t size)
    {
        while (m_received - m_read < size) {
            if (size > sizeof m_input || !flush())
                return nullptr;
            std::memmove(m_input, m_input + m_read, m_received - m_read);
            m_received -= m_read;
            m_read = 0;
            const ssize_t count = recv(m_socket, m_input + m_received, sizeof m_input - m_received, 0);
            if (count == 0 || (count < 0 && errno != EINTR))
                return nullptr;
            m_received += size_t(std::max<ssize_t>(count, 0));
        }
        m_read += size;
        return m_input + m_read - size;
    }

    void sendPiece(std::uint32_t size, const char *bytes = nullptr)
    {
        if (sizeof m_output - m_filled < sizeof size + size)
            flush();
        std::memcpy(m_output + m_filled, &size, sizeof size);
        m_filled += sizeof size;
        if (bytes)
            std::memcpy(m_output + m_filled, bytes, size);
        m_filled += bytes ? size : 0;
    }

    /// Sends what was buffered. If that fails, the connection is closed, and nothing stays buffered either.
    bool flush()
    {
        const size_t filled = std::exchange(m_filled, 0);
        for (size_t sent = 0; sent < filled;) {
            const ssize_t count = send(m_socket, m_output + sent, filled - sent, MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR)
                return false;
            sent += size_t(std::max<ssize_t>(count, 0));
        }
        return true;
    }

private:
    int m_socket;
    size_t m_read = 0;
    size_t m_received = 0;
    size_t m_filled = 0;
    char m_input[32 * 1024];
    char m_output[64 * 1024];
};

void sendFile(const char *path, Connection &connection)
{
    // Opened before fstat(), so that it cannot be exchanged in between; O_NONBLOCK for FIFOs and devices.
    // Files of /proc and the like claim to be regular and empty, and may block or never end.
    const int file = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat facts;
    const bool isSane = file >= 0 && fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) &&
                        facts.st_size <= FolderAnswers::maxFileSize;
    off_t left = isSane ? facts.st_size : 0;
    char bytes[16 * 1024];
    while (left > 0) {
        const ssize_t count = read(file, bytes, std::min(sizeof bytes, size_t(left)));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        connection.sendPiece(std::uint32_t(count), bytes);
        left -= count;
    }
    if (file >= 0)
        close(file);
    connection.sendPiece(0);
}

/// Whether the name of any direct entry, hidden ones included, ends with `suffix`; false if it cannot be
/// listed.
bool hasNameWithSuffix(const char *folder, std::string_view suffix)
{
    const int listing = open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    alignas(dirent64) char entries[16 * 1024];
    bool isFound = false;
    for (ssize_t filled = 0; !isFound && (filled = getdents64(listing, entries, sizeof entries)) > 0;) {
        for (ssize_t at = 0; at < filled;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(entries + at);
            isFound = isFound || std::string_view(entry->d_name).ends_with(suffix);
            at += entry->d_reclen;
        }
    }
    if (listing >= 0)
        close(listing);
    return isFound;
}

bool hasMarker(const char *folder, const char *marker)
{
    if (marker[0] == '.')
        return hasNameWithSuffix(folder, marker);
    char path[PATH_MAX + 32];
    const size_t length = strlen(folder);
    std::memcpy(path, folder, length);
    path[length] = '/';
    std::strcpy(path + length + 1, marker);
    struct stat facts;
    return stat(path, &facts) == 0;
}

void sendMarker(const char *folder, Connection &connection)
{
    const auto *const found =
        std::ranges::find_if(FolderAnswers::markers, [&](const FolderAnswers::Marker &marker) {
            return hasMarker(folder, marker.file);
        });
    const char place = char(found - FolderAnswers::markers.begin());
    if (found != FolderAnswers::markers.end())
        connection.sendPiece(1, &place);
    connection.sendPiece(0);
}

void sendIsFolder(const char *path, Connection &connection)
{
    struct stat facts;
    if (stat(path, &facts) == 0 && S_ISDIR(facts.st_mode))
        connection.sendPiece(1, "");
    connection.sendPiece(0);
}

std::int64_t nowNs()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

void FolderAnswers::serve(int socket, Progress &progress)
{
    Connection connection(socket);
    for (;;) {
        Question question;
        const char *header = connection.receive(sizeof question);
        if (!header)
            return;
        std::memcpy(&question, header, sizeof question);
        const char *path = connection.receive(question.pathSize);
        if (!path)
            return;
        if (progress.isCautious && !connection.flush())
            return;
        progress.begunNs = nowNs();
        ++progress.begun;
        switch (question.kind) {
        case Kind::File:
            sendFile(path, connection);
            break;
        case Kind::Marker:
            sendMarker(path, connection);
            break;
        case Kind::IsFolder:
            sendIsFolder(path, connection);
            break;
        }
    }
}

} // namespace portolan
