#include "Probe.h"

#include <string>

#include <sys/socket.h>

namespace {

// Against servers that never stop talking: what may be read before a request is given up, and how fast.
// Within the time limit the rate lets through every body that a page has.
constexpr size_t maxHeaderBytes = 256 * 1024;
constexpr curl_off_t maxBytesPerSecond = 64 * 1024 * 1024;
constexpr long maxRedirects = 20;

size_t discard(char *, size_t size, size_t count, void *)
{
    return size * count;
}

// A program started while a probe is under way must not inherit its connection.
curl_socket_t openSocket(void *, curlsocktype, curl_sockaddr *address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

} // namespace

Probe::Probe(const Curl &curl, quint16 port, HealthPromise promise)
    : m_curl(curl)
    , m_promise(std::move(promise))
    , m_handle(curl.easy_init(), curl.easy_cleanup)
{
    if (!m_handle)
        return;
    CURL *const h = m_handle.get();
    curl.easy_setopt(h, CURLOPT_URL, ("http://127.0.0.1:" + std::to_string(port) + '/').c_str());
    curl.easy_setopt(h, CURLOPT_NOBODY, 1L);
    curl.easy_setopt(h, CURLOPT_USERAGENT, "Portolan");

    curl.easy_setopt(h, CURLOPT_FOLLOWLOCATION, 1L);
    curl.easy_setopt(h, CURLOPT_MAXREDIRS, maxRedirects);
    curl.easy_setopt(h, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");

    // Nothing of the user's surroundings and nothing of another probe has a say.
    curl.easy_setopt(h, CURLOPT_PROXY, "");
    curl.easy_setopt(h, CURLOPT_NOPROXY, "*");
    curl.easy_setopt(h, CURLOPT_HTTPAUTH, CURLAUTH_NONE);
    curl.easy_setopt(h, CURLOPT_FRESH_CONNECT, 1L);
    curl.easy_setopt(h, CURLOPT_FORBID_REUSE, 1L);
    curl.easy_setopt(h, CURLOPT_DNS_CACHE_TIMEOUT, 0L);

    curl.easy_setopt(h, CURLOPT_HEADERFUNCTION, &countHeader);
    curl.easy_setopt(h, CURLOPT_HEADERDATA, this);
    curl.easy_setopt(h, CURLOPT_WRITEFUNCTION, &discard);
    curl.easy_setopt(h, CURLOPT_MAX_RECV_SPEED_LARGE, maxBytesPerSecond);

    curl.easy_setopt(h, CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    curl.easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    // A name that a redirect leads to may take the resolver long; ending the probe does not wait for it.
    curl.easy_setopt(h, CURLOPT_QUICK_EXIT, 1L);
}

void Probe::begin(Clock::time_point now)
{
    if (!m_start)
        m_start = now;
    m_headerBytes = 0;
    m_idleDeadline = now + idleLimit;
    m_totalDeadline = now + totalLimit;
}

bool Probe::conclude(CURLcode code, Clock::time_point now)
{
    if (const auto status = responseStatus(code)) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - *m_start);
        m_promise.keep(Health::healthy(*status, elapsed.count()));
        return true;
    }
    if (m_isFallback) {
        m_promise.keep(Health::unreachable());
        return true;
    }
    m_isFallback = true;
    m_curl.easy_setopt(m_handle.get(), CURLOPT_HTTPGET, 1L);
    return false;
}

size_t Probe::countHeader(char *, size_t size, size_t count, void *probe)
{
    size_t &total = static_cast<Probe *>(probe)->m_headerBytes;
    total += size * count;
    return total <= maxHeaderBytes ? size * count : 0;
}

// The status of the final response; nothing when there was none, or interim ones only. A header section that
// the client library finds malformed is a response still: browsers show such pages.
std::optional<qint64> Probe::responseStatus(CURLcode code) const
{
    long status = 0;
    m_curl.easy_getinfo(m_handle.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isFinal = status >= 200;
    const bool isRedirect = status >= 300 && status < 400;
    if (isFinal && (code == CURLE_OK || (code == CURLE_WEIRD_SERVER_REPLY && !isRedirect)))
        return status;
    return std::nullopt;
}
