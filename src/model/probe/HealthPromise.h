#pragma once

#include "Health.h"

#include <QFuture>
#include <QPromise>

#include <utility>

namespace portolan {

/// The promise of a probe's outcome. One that is dropped is kept all the same: as unreachable.
class HealthPromise
{
public:
    HealthPromise() { m_promise.start(); }
    HealthPromise(HealthPromise &&other) noexcept
        : m_promise(std::move(other.m_promise))
        , m_isOpen(std::exchange(other.m_isOpen, false))
    {}
    HealthPromise &operator=(HealthPromise &&) = delete;
    ~HealthPromise() { keep(Health::unreachable()); }

    [[nodiscard]] QFuture<Health> future() const { return m_promise.future(); }

    /// Finishes the future with `outcome`, unless it is finished already.
    void keep(Health outcome)
    {
        if (!std::exchange(m_isOpen, false))
            return;
        m_promise.addResult(outcome);
        m_promise.finish();
    }

private:
    QPromise<Health> m_promise;
    bool m_isOpen = true;
};

} // namespace portolan
