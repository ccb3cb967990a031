#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

/// Runs work that may never return, such as file access on a dead mount, and waits for it only so long.
///
/// The work runs on a thread of the worker's own, which is given up when it hangs. What hangs is remembered
/// for the whole program by what it is about, and is not tried again before it has come back: there is at
/// most one stuck thread per dead folder. After two time-outs a worker tries nothing more. One worker serves
/// one thread.
class ExpendableWorker
{
public:
    explicit ExpendableWorker(std::chrono::milliseconds deadline, std::stop_token stop = {});
    ~ExpendableWorker();
    Q_DISABLE_COPY_MOVE(ExpendableWorker)

    /// The result of `work`, or nothing if it did not come in time or was not tried. `work` must own all it
    /// touches, for it may go on after the caller is gone.
    template <typename Result>
    [[nodiscard]] std::optional<Result> run(const QString &about, std::function<Result()> work)
    {
        const auto result = std::make_shared<std::optional<Result>>();
        if (!finish(about, [result, work = std::move(work)] { *result = work(); }))
            return std::nullopt;
        return std::move(*result);
    }

private:
    struct Lane;

    bool finish(const QString &about, std::function<void()> work);
    bool openLane();

    const std::chrono::milliseconds m_deadline;
    const std::stop_token m_stop;
    int m_timeOuts = 0;
    std::shared_ptr<Lane> m_lane; ///< absent until there is work, and after its thread was given up
    std::thread m_thread;
};
