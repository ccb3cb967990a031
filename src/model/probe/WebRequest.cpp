#include "WebRequest.h"

#include <sys/socket.h>

namespace portolan {

namespace {

// A program started while a request is under way must not inherit its connection.
curl_socket_t openSocket(void *, curlsocktype, curl_sockaddr *address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

// Reading the machine's certificates takes the processor some 40 ms, during which every other probe waits.
// The library remembers them from one request to the next only where they are all in one file.
void rememberCertificates(const Curl &curl, CURL *handle)
{
    char *file = nullptr;
    if (curl.easy_getinfo(handle, CURLINFO_CAINFO, &file) == CURLE_OK && file)
        curl.easy_setopt(handle, CURLOPT_CAPATH, nullptr);
    curl.easy_setopt(handle, CURLOPT_CA_CACHE_TIMEOUT, 60L); // seconds; new ones count from then on
}

// A body ends the transfer. Left to itself, the library prints it.
size_t refuseBody(char *, size_t, size_t, void *)
{
    return 0;
}

} // namespace

WebRequest::WebRequest(WebClient &client, Probe::Method method, const RequestTarget &target)
    : m_client(client)
    , m_handle(client.m_curl.easy_init(), client.m_curl.easy_cleanup)
{
    if (!m_handle) {
        m_state = RequestState::failed;
        return;
    }
    const Curl &curl = client.m_curl;
    CURL *const h = m_handle.get();
    curl.easy_setopt(h, CURLOPT_PRIVATE, this);
    curl.easy_setopt(h, CURLOPT_URL, target.url().c_str());
    curl.easy_setopt(h, CURLOPT_NOBODY, method == Probe::Method::head ? 1L : 0L);
    curl.easy_setopt(h, CURLOPT_USERAGENT, "Portolan");

    // Nothing of the user's surroundings and nothing of another request has a say.
    curl.easy_setopt(h, CURLOPT_PROXY, "");
    curl.easy_setopt(h, CURLOPT_NOPROXY, "*");
    curl.easy_setopt(h, CURLOPT_HTTPAUTH, CURLAUTH_NONE);
    curl.easy_setopt(h, CURLOPT_FRESH_CONNECT, 1L);
    curl.easy_setopt(h, CURLOPT_FORBID_REUSE, 1L);
    curl.easy_setopt(h, CURLOPT_DNS_CACHE_TIMEOUT, 0L);

    rememberCertificates(curl, h);
    curl.easy_setopt(h, CURLOPT_HEADERFUNCTION, &readHeader);
    curl.easy_setopt(h, CURLOPT_HEADERDATA, this);
    curl.easy_setopt(h, CURLOPT_WRITEFUNCTION, &refuseBody);

    curl.easy_setopt(h, CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    curl.easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    // A name may take the resolver long; ending the request does not wait for it.
    curl.easy_setopt(h, CURLOPT_QUICK_EXIT, 1L);
    if (curl.multi_add_handle(client.m_multi.get(), h) != CURLM_OK)
        m_state = RequestState::failed;
}

WebRequest::~WebRequest()
{
    if (m_handle)
        m_client.m_curl.multi_remove_handle(m_client.m_multi.get(), m_handle.get());
}

// Taking less than was given ends the transfer: what follows the header section is not wanted.
size_t WebRequest::readHeader(char *line, size_t size, size_t count, void *request)
{
    auto *const self = static_cast<WebRequest *>(request);
    self->m_hasReceived = true;
    const auto head = self->m_response.read({line, size * count});
    return head == ResponseHead::State::incomplete ? size * count : 0;
}

void WebRequest::ended()
{
    const bool isAnswered = m_response.state() == ResponseHead::State::complete;
    m_state = isAnswered ? RequestState::answered : RequestState::failed;
}

} // namespace portolan
