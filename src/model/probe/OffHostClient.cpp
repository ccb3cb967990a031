#include "OffHostClient.h"

#include <limits>
#include <system_error>
#include <utility>

#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

namespace portolan {

namespace {

// A program started meanwhile must not inherit the connection.
curl_socket_t openSocket(void *, curlsocktype, curl_sockaddr *address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

// A body ends the transfer: it is not wanted.
size_t refuseBody(char *, size_t, size_t, void *)
{
    return 0;
}

// libcurl keeps the certificates from one request to the next only if they all come from one file.
void keepCertificates(CURL *handle)
{
    char *file = nullptr;
    if (curl_easy_getinfo(handle, CURLINFO_CAINFO, &file) == CURLE_OK && file)
        curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
}

} // namespace

/// A request under way, on the client's thread.
struct OffHostClient::Transfer
{
    Transfer(OffHostClient &owner, const Task &task);
    ~Transfer() { curl_multi_remove_handle(client.m_multi.get(), handle.get()); }
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    OffHostClient &client;
    Id id;
    ResponseHead response;
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle{curl_easy_init(), &curl_easy_cleanup};
};

OffHostClient::Transfer::Transfer(OffHostClient &owner, const Task &task)
    : client(owner)
    , id(task.id)
{
    CURL *const h = handle.get();
    curl_easy_setopt(h, CURLOPT_PRIVATE, this);
    curl_easy_setopt(h, CURLOPT_URL, task.url.c_str());
    curl_easy_setopt(h, CURLOPT_NOBODY, task.method == Probe::Method::Head ? 1L : 0L);
    curl_easy_setopt(h, CURLOPT_USERAGENT, "Portolan");
    curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &readHeader);
    curl_easy_setopt(h, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &refuseBody);

    // Every probe is independent of the environment and of other probes.
    curl_easy_setopt(h, CURLOPT_PROXY, "");
    curl_easy_setopt(h, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(h, CURLOPT_FORBID_REUSE, 1L);

    curl_easy_setopt(h, CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(h, CURLOPT_QUICK_EXIT, 1L); // ending a request does not wait for its name lookup
    keepCertificates(h);
    curl_multi_add_handle(client.m_multi.get(), h);
}

std::unique_ptr<OffHostClient> OffHostClient::create()
{
    std::unique_ptr<OffHostClient> client(new OffHostClient);
    if (!client->m_reportsFd.isOpen() || !client->m_multi)
        return nullptr;
    try {
        client->m_thread = std::jthread([&c = *client](const std::stop_token &stop) { c.run(stop); });
    } catch (const std::system_error &) {
        return nullptr;
    }
    return client;
}

OffHostClient::OffHostClient()
    : m_reportsFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_multi(curl_multi_init(), &curl_multi_cleanup)
{}

OffHostClient::~OffHostClient()
{
    if (m_thread.joinable()) {
        m_thread.request_stop();
        curl_multi_wakeup(m_multi.get());
        m_thread.join();
    }
}

void OffHostClient::start(Id id, Probe::Method method, std::string url)
{
    post({id, method, std::move(url)});
}

void OffHostClient::cancel(Id id)
{
    post({id, {}, {}});
}

void OffHostClient::post(Task task)
{
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
    curl_multi_wakeup(m_multi.get());
}

std::vector<OffHostClient::Task> OffHostClient::takeTasks()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_tasks, {});
}

std::unordered_map<OffHostClient::Id, OffHostClient::Report> OffHostClient::takeReports()
{
    const std::lock_guard lock(m_mutex);
    eventfd_t count = 0;
    eventfd_read(m_reportsFd.get(), &count);
    return std::exchange(m_reports, {});
}

void OffHostClient::report(Id id, Report report)
{
    const std::lock_guard lock(m_mutex);
    m_reports.insert_or_assign(id, std::move(report));
    eventfd_write(m_reportsFd.get(), 1);
}

void OffHostClient::run(const std::stop_token &stop)
{
    pthread_setname_np(pthread_self(), "portolan-remote");
    std::unordered_map<Id, Transfer> transfers;
    while (!stop.stop_requested()) {
        for (const Task &task : takeTasks()) {
            if (task.url.empty())
                transfers.erase(task.id);
            else
                transfers.try_emplace(task.id, *this, task);
        }
        int count = 0;
        curl_multi_perform(m_multi.get(), &count);
        while (const CURLMsg *message = curl_multi_info_read(m_multi.get(), &count)) {
            Transfer *transfer = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
            report(transfer->id, {true, std::move(transfer->response)});
        }
        curl_multi_poll(m_multi.get(), nullptr, 0, std::numeric_limits<int>::max(), nullptr);
    }
}

// Taking less than it was given ends the transfer.
size_t OffHostClient::readHeader(char *line, size_t size, size_t count, void *data)
{
    auto &transfer = *static_cast<Transfer *>(data);
    const auto state = transfer.response.read({line, size * count});
    transfer.client.report(transfer.id, {});
    return state == ResponseHead::State::Incomplete ? size * count : 0;
}

} // namespace portolan
