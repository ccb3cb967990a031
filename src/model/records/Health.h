// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>

namespace portolan {

/// The outcome of the last HTTP probe of a service. `status` and `ms` are meaningful only if healthy, and 0
/// in every other state.
class Health
{
    Q_GADGET
    Q_PROPERTY(State state READ state CONSTANT FINAL)
    Q_PROPERTY(qint64 status READ status CONSTANT FINAL)
    Q_PROPERTY(qint64 ms READ ms CONSTANT FINAL)

public:
    enum class State : quint8 {
        unknown,     ///< not probed yet, or the probe could not be made
        checking,    ///< a probe is under way
        healthy,     ///< an HTTP response arrived, whatever its status code
        unreachable, ///< no HTTP response could be obtained
    };
    Q_ENUM(State)

    constexpr Health() = default;
    [[nodiscard]] static constexpr Health unknown() { return {}; }
    [[nodiscard]] static constexpr Health checking() { return Health(State::checking); }
    [[nodiscard]] static constexpr Health unreachable() { return Health(State::unreachable); }
    /// An answer with HTTP status code `status` after `ms` whole milliseconds.
    [[nodiscard]] static constexpr Health healthy(qint64 status, qint64 ms)
    {
        return Health(State::healthy, status, ms);
    }

    [[nodiscard]] constexpr State state() const { return m_state; }
    [[nodiscard]] constexpr bool isHealthy() const { return m_state == State::healthy; }
    [[nodiscard]] constexpr qint64 status() const { return m_status; }
    [[nodiscard]] constexpr qint64 ms() const { return m_ms; }

    friend constexpr bool operator==(const Health &, const Health &) = default;
    friend size_t qHash(const Health &health, size_t seed = 0)
    {
        return qHashMulti(seed, int(health.m_state), health.m_status, health.m_ms);
    }

private:
    constexpr explicit Health(State state, qint64 status = 0, qint64 ms = 0)
        : m_state(state)
        , m_status(status)
        , m_ms(ms)
    {}

    State m_state = State::unknown;
    qint64 m_status = 0;
    qint64 m_ms = 0;
};

} // namespace portolan
