// SPDX-License-Identifier: MIT
#pragma once

#include "PortScanner.h"

#include <QList>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace portolan {

/// A scanner whose scans wait until the test sets the result.
class FakeScanner
{
public:
    /// To be given to the store; shares its state with this object.
    std::function<ScanResult(std::stop_token)> function() const
    {
        return [state = m_state](std::stop_token stop) { return state->scan(std::move(stop)); };
    }

    /// Ends the scan under way, or the next one, with `services`, whose processes are `identities`.
    void finish(const QList<Service> &services, const QHash<qint32, ProcessIdentity> &identities = {})
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->found = ScanResult{services, identities};
        m_state->changed.notify_all();
    }

    /// Scans begun so far.
    int begun() const { return m_state->begun; }
    /// Scans that a stop request ended.
    int stopped() const { return m_state->stopped; }

private:
    struct State
    {
        ScanResult scan(std::stop_token stop)
        {
            std::unique_lock lock(mutex);
            ++begun;
            if (!changed.wait(lock, stop, [this] { return found.has_value(); }))
                ++stopped;
            return std::exchange(found, std::nullopt).value_or(ScanResult());
        }

        std::mutex mutex;
        std::condition_variable_any changed;
        std::optional<ScanResult> found;
        std::atomic<int> begun = 0;
        std::atomic<int> stopped = 0;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace portolan
