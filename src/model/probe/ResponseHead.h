// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace portolan {

/// Reads the response to an HTTP request up to the end of its header section. Interim responses are skipped
/// and the body is ignored. The result does not depend on how the bytes are split. Any one thread.
class ResponseHead
{
public:
    enum class State {
        Incomplete, ///< more bytes are needed
        Complete,   ///< a final response
        Invalid,    ///< not HTTP, or too long
    };

    /// Takes the next bytes that arrived; those after the header section are ignored.
    State read(std::string_view bytes);

    [[nodiscard]] State state() const { return m_state; }
    /// The status code of the final response, 200 to 999; meaningful only when complete.
    [[nodiscard]] int status() const { return m_status; }
    /// The Location of a redirect, as the server wrote it, at most 8 KiB; empty for every other response.
    [[nodiscard]] std::string_view redirect() const;
    /// The memory in use, in bytes.
    [[nodiscard]] std::size_t size() const { return m_line.capacity() + m_location.capacity(); }

private:
    void keep(std::string_view part);
    void readLine();
    void readStatusLine(std::string_view line);
    void readHeader(std::string_view line);
    void endSection();

    State m_state = State::Incomplete;
    bool m_isInSection = false; // past the status line
    int m_status = 0;
    int m_interimResponses = 0;
    std::size_t m_length = 0;
    std::string m_line; // what is kept of the line that is arriving
    std::string m_location;
    bool m_isLocationTooLong = false;
};

} // namespace portolan
