#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace portolan {

/// What a server says to a request, read up to the end of the final response's header section: interim
/// responses are passed over, and a body is nobody's business. A function of the bytes alone.
class ResponseHead
{
public:
    enum class State {
        incomplete, ///< more bytes are needed
        complete,   ///< a final response
        invalid,    ///< this is no HTTP, or there is no end to it
    };

    /// Takes the next bytes that arrived; what follows the header section is ignored.
    State read(std::string_view bytes);

    [[nodiscard]] State state() const { return m_state; }
    /// The status code of the final response, 200 to 999; meaningful only when complete.
    [[nodiscard]] int status() const { return m_status; }
    /// Where a redirect leads, as the server wrote it; empty for every other response.
    [[nodiscard]] std::string_view redirect() const;

private:
    [[nodiscard]] bool canBecomeStatusLine(std::string_view start) const;
    void readLine(std::string_view line);
    void readStatusLine(std::string_view line);
    void readHeader(std::string_view line);
    void endSection();

    State m_state = State::incomplete;
    bool m_isInSection = false; // past its status line
    int m_status = 0;
    int m_interimResponses = 0;
    std::size_t m_length = 0;
    std::string m_partOfLine; // what has arrived of a line whose end has not
    std::string m_location;
};

} // namespace portolan
