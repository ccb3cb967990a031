#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

namespace portolan {

/// Runs work that may never return, such as file access on a dead mount, and waits for it only so long.
///
/// The work runs on a thread of the worker's own, which is given up when it hangs. What hangs is remembered
/// for the whole program by what it is about, and is not tried again before it has come back: there is at
/// most one stuck thread per dead folder. After `maxTimeOuts` a worker tries nothing more. One worker serves
/// one thread.
class ExpendableWorker
{
public:
    static constexpr int maxTimeOuts = 2;

    explicit ExpendableWorker(std::chrono::milliseconds deadline, std::stop_token stop = {});
    ~ExpendableWorker();
    Q_DISABLE_COPY_MOVE(ExpendableWorker)

    /// Work and what it is about. It must own all it touches, for it may go on after the caller is gone.
    template <typename Result>
    struct Task
    {
        QString about;
        std::function<Result()> work;
    };

    /// The results of `tasks`, done in their order; nothing for one that did not end in time or was not
    /// tried. The thread is woken once for all of them.
    template <typename Result>
    [[nodiscard]] std::vector<std::optional<Result>> run(std::vector<Task<Result>> tasks)
    {
        const auto slots = std::make_shared<std::vector<std::optional<Result>>>(tasks.size());
        std::vector<Job> jobs;
        jobs.reserve(tasks.size());
        for (size_t i = 0; i < tasks.size(); ++i)
            jobs.push_back(
                {tasks[i].about, [slots, i, work = std::move(tasks[i].work)] { (*slots)[i] = work(); }});
        finish(jobs);
        std::vector<std::optional<Result>> results(jobs.size());
        for (size_t i = 0; i < jobs.size(); ++i) {
            if (jobs[i].isDone) // else the thread may still write into the slot
                results[i] = std::move((*slots)[i]);
        }
        return results;
    }

    /// The same for one task.
    template <typename Result>
    [[nodiscard]] std::optional<Result> run(const QString &about, std::function<Result()> work)
    {
        return std::move(run<Result>({{about, std::move(work)}}).front());
    }

private:
    struct Lane;

    struct Job
    {
        QString about;
        std::function<void()> work;
        bool isDone = false;
    };

    void finish(std::vector<Job> &jobs);
    bool openLane();

    const std::chrono::milliseconds m_deadline;
    const std::stop_token m_stop;
    int m_timeOuts = 0;
    std::shared_ptr<Lane> m_lane; ///< absent until there is work, and after its thread was given up
    std::thread m_thread;
};

} // namespace portolan
