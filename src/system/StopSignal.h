// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <functional>
#include <stop_token>

#include <sys/eventfd.h>

namespace portolan {

/// A descriptor that becomes readable when a stop is requested.
class StopSignal
{
public:
    explicit StopSignal(const std::stop_token &stop)
        : m_event(stop.stop_possible() ? eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK) : -1)
        , m_callback(stop, [event = m_event.get()] { eventfd_write(event, 1); })
    {}

    /// Whether a stop would be noticed.
    [[nodiscard]] bool isHeard(const std::stop_token &stop) const
    {
        return m_event.isOpen() || !stop.stop_possible();
    }
    /// -1 if no stop is possible, or if no descriptor was left.
    [[nodiscard]] int descriptor() const { return m_event.get(); }

private:
    FileDescriptor m_event;
    std::stop_callback<std::function<void()>> m_callback;
};

} // namespace portolan
