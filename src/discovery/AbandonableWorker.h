#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace portolan {

/// Runs work that may never return, such as file access on a dead mount, and waits for it only so long.
///
/// Each run has a thread of its own. One that hangs is abandoned and the rest of the run continues on
/// another. What hangs is remembered by its subject, and not tried again by any run before it has returned:
/// there is at most one hanging thread for each dead folder. Any thread; runs do not wait for each other.
///
/// A thread that hangs in the kernel cannot be ended by anybody, so it may outlive this object and even
/// main(); it shares the ownership of all that it touches.
class AbandonableWorker
{
public:
    /// After so many time-outs in a run the rest of it is not tried.
    static constexpr int maxTimeOuts = 2;

    struct Limits
    {
        std::chrono::milliseconds deadline; ///< of each task
        std::stop_token stop = {};          ///< ends the run
    };

    /// Work and its subject. It must own all that it touches.
    template <typename Result>
    struct Task
    {
        QString subject;
        std::function<Result()> work;
    };

    AbandonableWorker();

    /// The results of `tasks`, which are done in their order; absent for one that did not end in time or was
    /// not tried.
    template <typename Result>
    [[nodiscard]] std::vector<std::optional<Result>> run(std::vector<Task<Result>> tasks,
                                                         const Limits &limits)
    {
        const auto slots = std::make_shared<std::vector<std::optional<Result>>>(tasks.size());
        std::vector<Job> jobs;
        jobs.reserve(tasks.size());
        for (size_t i = 0; i < tasks.size(); ++i)
            jobs.push_back({std::move(tasks[i].subject),
                            [slots, i, work = std::move(tasks[i].work)] { (*slots)[i] = work(); }});
        finish(jobs, limits);
        std::vector<std::optional<Result>> results(jobs.size());
        for (size_t i = 0; i < jobs.size(); ++i) {
            if (jobs[i].isDone) // else the thread may still write into the slot
                results[i] = std::move((*slots)[i]);
        }
        return results;
    }

private:
    struct Job
    {
        QString subject;
        std::function<void()> work;
        bool isDone = false;
    };

    class Hanging;

    void finish(std::vector<Job> &jobs, const Limits &limits);

    const std::shared_ptr<Hanging> m_hanging;
};

} // namespace portolan
