#pragma once

#include "Doorbell.h"
#include "Waits.h"

#include <deque>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace portolan {

/// Where any thread leaves values for one coroutine of this thread, which takes them in the order of their
/// arrival: `co_await mailbox.next()` gives the next one, or nothing once the waits are cancelled.
///
/// Senders may outlive the mailbox; what they send then is dropped. The hand-over is under a mutex of our
/// own, which the thread sanitizer can follow; it does not see into Qt's.
template <typename T>
class Mailbox : public Wait
{
    struct Box
    {
        std::mutex mutex;
        std::deque<T> letters;
        Doorbell *doorbell; ///< none once the mailbox is gone
    };

public:
    /// The way into one mailbox, for any thread.
    class Sender
    {
    public:
        void send(T letter) const
        {
            const std::lock_guard lock(m_box->mutex);
            if (!m_box->doorbell)
                return;
            m_box->letters.push_back(std::move(letter));
            if (m_box->letters.size() == 1)
                Q_EMIT m_box->doorbell->rung();
        }

    private:
        friend class Mailbox;
        explicit Sender(std::shared_ptr<Box> box)
            : m_box(std::move(box))
        {}

        std::shared_ptr<Box> m_box;
    };

    explicit Mailbox(Waits &waits)
        : Wait(waits)
    {
        m_box->doorbell = &m_doorbell;
        const auto open = [this] {
            collect();
            wake();
        };
        QObject::connect(&m_doorbell, &Doorbell::rung, &m_doorbell, open, Qt::QueuedConnection);
    }
    ~Mailbox()
    {
        const std::lock_guard lock(m_box->mutex);
        m_box->doorbell = nullptr;
        m_box->letters.clear();
    }

    [[nodiscard]] Sender sender() const { return Sender(m_box); }
    [[nodiscard]] Awaiter<Mailbox> next() { return {this}; }

private:
    friend Awaiter<Mailbox>;

    [[nodiscard]] bool isReady() const { return isCancelled() || !m_received.empty(); }
    void begin() {}
    [[nodiscard]] std::optional<T> result()
    {
        if (isCancelled())
            return std::nullopt;
        std::optional<T> letter = std::move(m_received.front());
        m_received.pop_front();
        return letter;
    }

    void collect()
    {
        const std::lock_guard lock(m_box->mutex);
        std::ranges::move(m_box->letters, std::back_inserter(m_received));
        m_box->letters.clear();
    }

    Doorbell m_doorbell;
    std::shared_ptr<Box> m_box = std::make_shared<Box>();
    std::deque<T> m_received;
};

} // namespace portolan
