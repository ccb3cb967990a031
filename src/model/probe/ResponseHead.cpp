// SPDX-License-Identifier: MIT
#include "ResponseHead.h"

#include <algorithm>

namespace portolan {

namespace {

// Limits for servers that send without end.
constexpr std::size_t maxLength = 256 * 1024;
constexpr std::size_t maxLocationLineLength = 8 * 1024;
constexpr std::size_t maxKeptLength = maxLocationLineLength + 2; // one byte too many and a '\r'
constexpr std::size_t maxKeptStatusLength = 256;                 // the reason phrase is not needed
constexpr int maxInterimResponses = 16;

constexpr std::string_view protocol = "HTTP/";
constexpr std::string_view locationStart = "location:";

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

char lower(char character)
{
    return character >= 'A' && character <= 'Z' ? char(character - 'A' + 'a') : character;
}

bool isName(std::string_view text, std::string_view lowerCaseName)
{
    return std::ranges::equal(text, lowerCaseName, {}, lower);
}

std::string_view trimmed(std::string_view text)
{
    const auto start = text.find_first_not_of(" \t");
    if (start == text.npos)
        return {};
    return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

// Other protocols are recognised by their first bytes: often the server sends no more than a greeting.
bool canBecomeStatusLine(std::string_view start)
{
    return protocol.starts_with(start.substr(0, protocol.size()));
}

bool isFollowed(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

ResponseHead::State ResponseHead::read(std::string_view bytes)
{
    while (m_state == State::Incomplete && !bytes.empty()) {
        const auto end = bytes.find('\n');
        const bool isWholeLine = end != bytes.npos;
        const std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(isWholeLine ? end + 1 : bytes.size());
        m_length += line.size() + isWholeLine;
        keep(line);
        if (m_length > maxLength || (!m_isInSection && !canBecomeStatusLine(m_line)))
            m_state = State::Invalid;
        else if (isWholeLine)
            readLine();
    }
    return m_state;
}

std::string_view ResponseHead::redirect() const
{
    return isFollowed(m_status) ? std::string_view(m_location) : std::string_view();
}

// Keeps only the start of a header line, unless it can be the Location.
void ResponseHead::keep(std::string_view part)
{
    const std::size_t missing = locationStart.size() - std::min(m_line.size(), locationStart.size());
    m_line += part.substr(0, missing);
    part.remove_prefix(std::min(missing, part.size()));
    const bool canBeLocation =
        isName(std::string_view(m_line).substr(0, locationStart.size()), locationStart);
    const std::size_t most = !m_isInSection ? maxKeptStatusLength : canBeLocation ? maxKeptLength : 0;
    m_line += part.substr(0, std::max(most, m_line.size()) - m_line.size());
}

void ResponseHead::readLine()
{
    if (m_line.ends_with('\r'))
        m_line.pop_back();
    if (!m_isInSection)
        readStatusLine(m_line);
    else if (m_line.empty())
        endSection();
    else
        readHeader(m_line);
    m_line.clear();
}

// "HTTP/1.1 200 OK", with any version, and the reason phrase may be missing.
void ResponseHead::readStatusLine(std::string_view line)
{
    m_state = State::Invalid;
    if (!line.starts_with(protocol))
        return;
    line.remove_prefix(protocol.size());
    const std::string_view version = line.substr(0, line.find(' '));
    const bool isVersion =
        (version.size() == 1 && isDigit(version[0])) ||
        (version.size() == 3 && isDigit(version[0]) && version[1] == '.' && isDigit(version[2]));
    line = trimmed(line.substr(version.size()));
    const std::string_view code = line.substr(0, line.find(' '));
    if (!isVersion || code.size() != 3 || !std::ranges::all_of(code, isDigit) || code[0] == '0')
        return;
    m_status = (code[0] - '0') * 100 + (code[1] - '0') * 10 + (code[2] - '0');
    m_isInSection = true;
    m_state = State::Incomplete;
}

// A malformed header is ignored, as browsers do.
void ResponseHead::readHeader(std::string_view line)
{
    if (!m_location.empty() || !isName(line.substr(0, locationStart.size()), locationStart))
        return;
    m_location = trimmed(line.substr(locationStart.size()));
    std::string().swap(m_line); // frees the memory of a long line
    m_isLocationTooLong = line.size() > maxLocationLineLength;
}

void ResponseHead::endSection()
{
    m_isInSection = false;
    if (m_status >= 200) {
        m_state = m_isLocationTooLong && isFollowed(m_status) ? State::Invalid : State::Complete;
    } else {
        m_location.clear();
        m_isLocationTooLong = false;
        if (++m_interimResponses > maxInterimResponses)
            m_state = State::Invalid;
    }
}

} // namespace portolan
