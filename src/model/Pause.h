#pragma once

#include "Waits.h"

#include <QTimer>

#include <chrono>
#include <optional>
#include <stop_token>

namespace portolan {

/// A sleep of fixed length for one coroutine: each `co_await pause.over()` suspends it for that long on the
/// monotonic clock. It gives true when the time has passed; false, at once, when a stop is requested or the
/// waits are cancelled.
class Pause : public Wait
{
public:
    Pause(Waits &waits, std::chrono::milliseconds length, std::stop_token stop = {});

    [[nodiscard]] Awaiter<Pause> over() { return {this}; }

private:
    friend Awaiter<Pause>;

    struct Waker
    {
        Pause *pause;
        void operator()() const { pause->wake(); }
    };

    [[nodiscard]] bool isReady() const { return isCancelled() || m_stop.stop_requested(); }
    void begin();
    [[nodiscard]] bool result();

    QTimer m_timer;
    std::stop_token m_stop;
    std::optional<std::stop_callback<Waker>> m_onStop;
};

} // namespace portolan
