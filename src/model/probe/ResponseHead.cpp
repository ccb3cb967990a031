#include "ResponseHead.h"

#include <algorithm>

namespace portolan {

namespace {

// Against servers that never stop talking.
constexpr std::size_t maxLength = 256 * 1024;
constexpr int maxInterimResponses = 16;

constexpr std::string_view protocol = "HTTP/";

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

bool isFollowed(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

ResponseHead::State ResponseHead::read(std::string_view bytes)
{
    while (m_state == State::incomplete && !bytes.empty()) {
        const auto end = bytes.find('\n');
        const bool isWholeLine = end != bytes.npos;
        std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(isWholeLine ? end + 1 : bytes.size());
        m_length += line.size() + isWholeLine;
        if (m_length > maxLength) {
            m_state = State::invalid;
        } else if (!isWholeLine) {
            m_partOfLine += line;
            if (!m_isInSection && !canBecomeStatusLine(m_partOfLine))
                m_state = State::invalid;
        } else if (m_partOfLine.empty()) {
            readLine(line);
        } else {
            m_partOfLine += line;
            readLine(m_partOfLine);
            m_partOfLine.clear();
        }
    }
    return m_state;
}

std::string_view ResponseHead::redirect() const
{
    return isFollowed(m_status) ? std::string_view(m_location) : std::string_view();
}

// Whoever does not speak HTTP is known by its first bytes: often it says nothing more.
bool ResponseHead::canBecomeStatusLine(std::string_view start) const
{
    return protocol.starts_with(start.substr(0, protocol.size()));
}

void ResponseHead::readLine(std::string_view line)
{
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (!m_isInSection)
        readStatusLine(line);
    else if (line.empty())
        endSection();
    else
        readHeader(line);
}

// "HTTP/1.1 200 OK" and what real servers make of it: another version, no reason.
void ResponseHead::readStatusLine(std::string_view line)
{
    m_state = State::invalid;
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
    m_state = State::incomplete;
}

// A malformed header is passed over: browsers show such pages.
void ResponseHead::readHeader(std::string_view line)
{
    const auto colon = line.find(':');
    if (colon != line.npos && m_location.empty() && isName(line.substr(0, colon), "location"))
        m_location = trimmed(line.substr(colon + 1));
}

void ResponseHead::endSection()
{
    m_isInSection = false;
    if (m_status >= 200) {
        m_state = State::complete;
    } else {
        m_location.clear();
        if (++m_interimResponses > maxInterimResponses)
            m_state = State::invalid;
    }
}

} // namespace portolan
