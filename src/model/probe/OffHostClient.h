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
/// lookups and certificate checks delay no probe of a local port. Each request ends with the response's
/// header section. Belongs to one thread at a time.
class OffHostClient
{
public:
    using Id = std::uint64_t;

    /// Starts the thread. If none is available, requests are never reported.
    OffHostClient();
    /// Cancels all requests and ends the thread, without waiting for a server or a name lookup. Qt itself
    /// waits for a lookup under way when the application object ends, until the resolver gives up.
    ~OffHostClient();
    OffHostClient(const OffHostClient &) = delete;
    OffHostClient &operator=(const OffHostClient &) = delete;

    /// Sends `text` to `target`; reports have this `id`.
    void start(Id id, const RequestTarget &target, const std::string &text);
    /// Cancels a request; a last report of it may still come. No effect if it has ended.
    void cancel(Id id);

    struct Report
    {
        bool hasEnded = false; ///< if not, something was received
        ResponseHead response; ///< of a request that has ended, which has failed unless this is complete
        bool lacksResources = false; ///< whether the request failed for lack of system resources
    };
    /// The reports since the last call, at most one for each request.
    [[nodiscard]] std::unordered_map<Id, Report> takeReports();
    /// Readable while there are reports to take; -1 if no descriptor was available.
    [[nodiscard]] int descriptor() const { return m_reportsFd.get(); }

private:
    struct Request;

    void report(Id id, Report report);

    FileDescriptor m_reportsFd;
    std::mutex m_mutex;
    std::unordered_map<Id, Report> m_reports; // guarded by m_mutex
    QThread m_thread;
    QObject m_onThread;                                          // runs the work queued for the thread
    std::unordered_map<Id, std::unique_ptr<Request>> m_requests; // used by the thread alone
};

} // namespace portolan
