// SPDX-License-Identifier: MIT
#pragma once

#include "ChildProcess.h"
#include "FileDescriptor.h"
#include "FolderAnswers.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace portolan {

/// Reads project files in the folders of other programs, which are not trusted: only regular files of limited
/// size are read, and nothing but the file system itself can block.
///
/// A file system that does not answer, such as a dead network mount, blocks the thread that asks it
/// indefinitely, and a process with a thread blocked there cannot end. So a child process reads. It is kept
/// while it answers; one that hangs is abandoned, and its folder is not accessed again before that child has
/// returned from it. There is at most one such process for each dead folder. Any thread; one run at a time,
/// others wait.
class FolderReader
{
public:
    /// After `maxTimeOuts` time-outs, the last of which comes after a tenth of the deadline, a run ends, and
    /// beside `maxAbandoned` abandoned processes no other is started.
    static constexpr int maxTimeOuts = 3;
    static constexpr size_t maxAbandoned = 32;

    using Kind = FolderAnswers::Kind;
    struct Question
    {
        Kind kind;
        QString folder;        ///< an absolute path; any other text counts as a folder that does not exist
        const char *file = ""; ///< name of a file in it, for Kind::File
    };

    struct Limits
    {
        std::chrono::milliseconds deadline = std::chrono::seconds(2); ///< of each question
        std::stop_token stop = {};                                    ///< ends the run
    };

    /// Starts the child process: the earlier in a program, the less memory there is to copy. If that fails,
    /// ask() tries again.
    FolderReader();
    ~FolderReader();
    Q_DISABLE_COPY_MOVE(FolderReader)

    /// The answers to `questions`, which are asked in their order; absent for one that was not answered in
    /// time or not asked. File: the bytes of a regular file of 1 byte to 4 MiB, and none for anything else.
    /// Marker: the index in FolderAnswers::markers in one byte, or no byte. IsFolder: one byte for yes, or no
    /// byte.
    [[nodiscard]] std::vector<std::optional<QByteArray>> ask(const std::vector<Question> &questions,
                                                             const Limits &limits);

    /// The process id of the current child, or -1.
    [[nodiscard]] pid_t child() const { return m_child ? m_child->process.pid() : -1; }

private:
    using Answers = std::vector<std::optional<QByteArray>>;
    using Progress = std::unique_ptr<FolderAnswers::Progress, void (*)(FolderAnswers::Progress *)>;
    struct Child
    {
        ChildProcess process;
        FileDescriptor connection;
        Progress progress;
        QString folder; ///< where it hangs, once it is abandoned
    };
    struct Batch;

    [[nodiscard]] Batch batchOf(const std::vector<Question> &questions, Answers &answers) const;
    bool exchange(Batch &batch, Answers &answers, std::chrono::milliseconds deadline, bool isLastAttempt,
                  int stop);
    bool start();
    void abandon(const QString &folder);

    std::mutex m_mutex; ///< guards the other members
    std::optional<Child> m_child;
    std::list<Child> m_abandoned;
};

} // namespace portolan
