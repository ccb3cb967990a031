// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "RequestTarget.h"
#include "ResponseHead.h"

#include <QObject>
#include <QThread>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

class QSslSocket;

namespace portolan {

/// HTTP requests to other hosts or over TLS, made with Qt's sockets on a thread of their own, so that name
/// lookups and the checking of certificates delay no probe of a local port. Each request ends with the
/// response's header section. Belongs to one thread at a time.
class OffHostClient
{
public:
    using Id = std::uint64_t;

    /// Starts the thread. Where the system has none left, requests are never reported about.
    OffHostClient();
    /// Cancels all requests and ends the thread, without waiting for a server or a name lookup. Qt itself
    /// waits for a lookup under way when the application object ends, until the resolver gives up.
    ~OffHostClient();
    OffHostClient(const OffHostClient &) = delete;
    OffHostClient &operator=(const OffHostClient &) = delete;

    /// Sends `text` to `target` and reports about that as `id`.
    void start(Id id, const RequestTarget &target, const std::string &text);
    /// Ends a request; a last report about it may still come. No effect on one that has ended.
    void cancel(Id id);

    struct Report
    {
        bool hasEnded = false;       ///< if not, something was received
        ResponseHead response;       ///< of a request that has ended; it has failed unless this is complete
        bool lacksResources = false; ///< whether the system had none to make the request with
    };
    /// What happened since the last call, one report for each request.
    [[nodiscard]] std::unordered_map<Id, Report> takeReports();
    /// Readable while there are reports to take; -1 where the system has no descriptor left.
    [[nodiscard]] int descriptor() const { return m_reportsFd.get(); }

private:
    struct Request;

    void report(Id id, Report report);

    FileDescriptor m_reportsFd;
    std::mutex m_mutex;
    std::unordered_map<Id, Report> m_reports; // guarded by m_mutex
    QThread m_thread;
    QObject m_onThread;                                          // where the thread's work is queued
    std::unordered_map<Id, std::unique_ptr<Request>> m_requests; // touched by the thread alone
};

} // namespace portolan
