// SPDX-License-Identifier: MIT
#pragma once

#include "Health.h"

#include <QFuture>
#include <QPromise>

#include <utility>

namespace portolan {

/// The promise of a probe's result. If it is destroyed without one, the future finishes as unreachable.
class HealthPromise
{
public:
    HealthPromise() { m_promise.start(); }
    HealthPromise(HealthPromise &&other) noexcept
        : m_promise(std::move(other.m_promise))
        , m_isOpen(std::exchange(other.m_isOpen, false))
    {}
    HealthPromise &operator=(HealthPromise &&) = delete;
    ~HealthPromise() { setResult(Health::unreachable()); }

    [[nodiscard]] QFuture<Health> future() const { return m_promise.future(); }

    /// Finishes the future with `result`; only the first call counts.
    void setResult(Health result)
    {
        if (!std::exchange(m_isOpen, false))
            return;
        m_promise.addResult(result);
        m_promise.finish();
    }

private:
    QPromise<Health> m_promise;
    bool m_isOpen = true;
};

} // namespace portolan
