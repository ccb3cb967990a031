#pragma once

#include "FileDescriptor.h"
#include "Probe.h"
#include "ResponseHead.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <curl/curl.h>

namespace portolan {

/// HTTP requests to other hosts or over TLS, made by libcurl on a thread of its own: reading the machine's
/// certificates takes some 40 ms, which delay no probe of a local port there. Each request ends with the
/// response's header section, and follows no redirect. Belongs to one thread at a time.
class OffHostClient
{
public:
    using Id = std::uint64_t;

    /// Starts the thread. Null where the system has no thread or descriptor left.
    [[nodiscard]] static std::unique_ptr<OffHostClient> create();
    /// Cancels all requests and ends the thread, without waiting for a server or a name lookup.
    ~OffHostClient();
    OffHostClient(const OffHostClient &) = delete;
    OffHostClient &operator=(const OffHostClient &) = delete;

    /// Requests `url`, percent-encoded, and reports about it as `id`.
    void start(Id id, Probe::Method method, std::string url);
    /// Ends a request; a last report about it may still come. No effect on one that has ended.
    void cancel(Id id);

    struct Report
    {
        bool hasEnded = false; ///< if not, something was received
        ResponseHead response; ///< of a request that has ended; it has failed unless this is complete
    };
    /// What happened since the last call, one report for each request.
    [[nodiscard]] std::unordered_map<Id, Report> takeReports();
    /// Readable while there are reports to take.
    [[nodiscard]] int descriptor() const { return m_reportsFd.get(); }

private:
    struct Transfer;

    /// What the thread is to do.
    struct Task
    {
        Id id;
        Probe::Method method;
        std::string url; // none to cancel
    };

    OffHostClient();
    void post(Task task);
    [[nodiscard]] std::vector<Task> takeTasks();
    void run(const std::stop_token &stop);
    void report(Id id, Report report);
    static size_t readHeader(char *line, size_t size, size_t count, void *transfer);

    FileDescriptor m_reportsFd;
    std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_multi;
    std::mutex m_mutex;
    std::vector<Task> m_tasks;                // guarded by m_mutex
    std::unordered_map<Id, Report> m_reports; // guarded by m_mutex
    std::jthread m_thread;
};

} // namespace portolan
