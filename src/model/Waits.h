#pragma once

#include <QtGlobal>

#include <coroutine>
#include <vector>

namespace portolan {

class Wait;

/// All the places where the coroutines of one owner are suspended. A coroutine that waits for an event that
/// never comes would leak, and one that is resumed after its owner's end would touch freed memory; so the
/// owner ends all waits before it goes. One thread only.
class Waits
{
public:
    Waits() = default;
    ~Waits();
    Q_DISABLE_COPY_MOVE(Waits)

    /// Ends every wait, and every later one at once. The waiting coroutines run to their next suspension,
    /// which is none if they end when told, before this returns.
    void cancel();
    [[nodiscard]] bool isCancelled() const { return m_cancelled; }

private:
    friend class Wait;

    std::vector<Wait *> m_suspended;
    bool m_cancelled = false;
};

/// A place where one coroutine can be suspended: the base of what it may await. Must not go while one is.
class Wait
{
public:
    Q_DISABLE_COPY_MOVE(Wait)

protected:
    explicit Wait(Waits &waits)
        : m_waits(waits)
    {}
    ~Wait();

    [[nodiscard]] bool isCancelled() const { return m_waits.isCancelled(); }
    /// Resumes the coroutine if one is suspended here; it may destroy this object.
    void wake();

private:
    friend class Waits;
    template <typename>
    friend class Awaiter;

    void suspend(std::coroutine_handle<> coroutine);

    Waits &m_waits;
    std::coroutine_handle<> m_coroutine;
};

/// What a function of a kind of Wait returns for `co_await`. The kind has `isReady()`, whether there is
/// anything to wait for; `begin()`, called when the coroutine is suspended; and `result()`, what it is
/// resumed with.
template <typename Kind>
class [[nodiscard]] Awaiter
{
public:
    Awaiter(Kind *wait)
        : m_wait(wait)
    {}

    [[nodiscard]] bool await_ready() const { return m_wait->isReady(); }
    void await_suspend(std::coroutine_handle<> coroutine) const
    {
        static_cast<Wait *>(m_wait)->suspend(coroutine);
        m_wait->begin();
    }
    [[nodiscard]] auto await_resume() const { return m_wait->result(); }

private:
    Kind *m_wait;
};

} // namespace portolan
