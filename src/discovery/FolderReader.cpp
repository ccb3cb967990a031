// SPDX-License-Identifier: MIT
#include "FolderReader.h"

#include "StopSignal.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <utility>

#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>

namespace portolan {

namespace {

using Clock = std::chrono::steady_clock;

/// The path that the child is asked about; empty if the answer is known to be none.
QByteArray pathOf(const FolderReader::Question &question)
{
    if (!question.folder.startsWith(u'/'))
        return {};
    QByteArray path = QFile::encodeName(question.folder);
    if (question.kind == FolderReader::Kind::File)
        path.append('/').append(question.file);
    return path.size() < PATH_MAX ? path : QByteArray();
}

void unmap(FolderAnswers::Progress *progress)
{
    munmap(progress, sizeof *progress);
}

} // namespace

/// Questions that were sent to a child.
struct FolderReader::Batch
{
    std::vector<size_t> asked; ///< their indices in the run
    size_t answered = 0;
    QByteArray unsent;
    QByteArray received; ///< the incomplete piece
    QByteArray answer;   ///< the pieces of the current answer so far

    void add(size_t place, Kind kind, const QByteArray &path)
    {
        const FolderAnswers::Question question{kind, std::uint32_t(path.size()) + 1};
        unsent.append(reinterpret_cast<const char *>(&question), sizeof question);
        unsent.append(path.constData(), path.size() + 1);
        asked.push_back(place);
    }

    bool send(int connection)
    {
        const ssize_t count =
            ::send(connection, unsent.constData(), size_t(unsent.size()), MSG_DONTWAIT | MSG_NOSIGNAL);
        unsent.remove(0, std::max<ssize_t>(count, 0));
        return count >= 0 || errno == EAGAIN || errno == EINTR;
    }

    bool receive(int connection, Answers &answers)
    {
        std::array<char, 64 * 1024> bytes;
        const ssize_t count = recv(connection, bytes.data(), bytes.size(), MSG_DONTWAIT);
        received.append(bytes.data(), std::max<ssize_t>(count, 0));
        qsizetype read = 0;
        for (std::uint32_t size = 0; received.size() - read >= qsizetype(sizeof size);) {
            std::memcpy(&size, received.constData() + read, sizeof size);
            if (received.size() - read < qsizetype(sizeof size + size))
                break;
            if (size == 0)
                answers[asked[answered++]] = std::exchange(answer, {});
            answer.append(received.constData() + read + sizeof size, size);
            read += qsizetype(sizeof size + size);
        }
        received.remove(0, read);
        return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
    }
};

FolderReader::FolderReader()
{
    start();
}

FolderReader::~FolderReader()
{
    for (Child &child : m_abandoned)
        child.process.killGroup();
    if (m_child) {
        m_child->process.killGroup();
        m_child->connection.close();
        (void)m_child->process.wait(QDeadlineTimer(ChildProcess::killTimeout));
    }
}

FolderReader::Answers FolderReader::ask(const std::vector<Question> &questions, const Limits &limits)
{
    Answers answers(questions.size());
    const StopSignal stop(limits.stop);
    if (questions.empty() || !stop.isHeard(limits.stop))
        return answers;
    const std::lock_guard lock(m_mutex);
    m_abandoned.remove_if([](Child &child) { return child.process.wait(QDeadlineTimer(0)); });
    for (int timeOuts = 0; timeOuts < maxTimeOuts && !limits.stop.stop_requested(); ++timeOuts) {
        Batch batch = batchOf(questions, answers);
        if (batch.asked.empty() || (!m_child && !start()))
            break;
        const std::uint32_t before = m_child->progress->begun;
        const bool isLastAttempt = timeOuts + 1 == maxTimeOuts;
        if (exchange(batch, answers, limits.deadline, isLastAttempt, stop.descriptor()))
            break;
        const std::uint32_t begun = m_child->progress->begun - before;
        abandon(begun > 0 ? questions[batch.asked[begun - 1]].folder : QString());
    }
    return answers;
}

/// The questions that have no answer yet and may get one.
FolderReader::Batch FolderReader::batchOf(const std::vector<Question> &questions, Answers &answers) const
{
    Batch batch;
    for (size_t i = 0; i < questions.size(); ++i) {
        const QByteArray path = answers[i] ? QByteArray() : pathOf(questions[i]);
        const auto hangsThere = [&](const Child &child) { return child.folder == questions[i].folder; };
        if (path.isEmpty())
            answers[i] = answers[i].value_or(QByteArray());
        else if (std::ranges::none_of(m_abandoned, hangsThere))
            batch.add(i, questions[i].kind, path);
    }
    return batch;
}

/// Whether the child has answered everything. If not, it has ended or hangs, or a stop was requested.
bool FolderReader::exchange(Batch &batch, Answers &answers, std::chrono::milliseconds deadline,
                            bool isLastAttempt, int stop)
{
    const FolderAnswers::Progress &progress = *m_child->progress;
    const int connection = m_child->connection.get();
    const std::uint32_t before = progress.begun;
    const auto start = Clock::now();
    if (!batch.send(connection))
        return false;
    bool isLast = false; // what it has answered counts, however late this thread reads it
    while (batch.answered < batch.asked.size() && !isLast) {
        const bool hasBegun = progress.begun != before;
        const auto since =
            hasBegun ? Clock::time_point(std::chrono::nanoseconds(progress.begunNs.load())) : start;
        const auto limit = hasBegun && isLastAttempt ? deadline / 10 : deadline;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(since + limit - Clock::now());
        isLast = left.count() <= 0;
        const int events = batch.unsent.isEmpty() ? POLLIN : POLLIN | POLLOUT;
        pollfd watched[] = {{connection, short(events), 0}, {stop, POLLIN, 0}};
        poll(watched, std::size(watched), int(std::clamp<qint64>(left.count(), 0, INT_MAX)));
        const bool isBroken = (watched[0].revents & POLLOUT && !batch.send(connection)) ||
                              (watched[0].revents & ~POLLOUT && !batch.receive(connection, answers));
        if (isBroken || watched[1].revents)
            return false;
        isLast = isLast && !watched[0].revents;
    }
    return batch.answered == batch.asked.size();
}

bool FolderReader::start()
{
    int ends[2];
    if (m_abandoned.size() >= maxAbandoned || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return false;
    FileDescriptor connection(ends[0]);
    const FileDescriptor childEnd(ends[1]);
    void *const shared = mmap(nullptr, sizeof(FolderAnswers::Progress), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        return false;
    Progress progress(new (shared) FolderAnswers::Progress, unmap);
    progress->isCautious = !m_abandoned.empty(); // another folder may hang too
    auto process = ChildProcess::fork("portolan-files", childEnd.get(),
                                      [&progress](int socket) { FolderAnswers::serve(socket, *progress); });
    if (!process)
        return false;
    m_child.emplace(Child{*std::move(process), std::move(connection), std::move(progress), {}});
    return true;
}

/// Abandons the current child and the folder that it hangs in. It ends when it returns from there.
void FolderReader::abandon(const QString &folder)
{
    m_child->connection.close();
    m_child->progress.reset();
    m_child->folder = folder;
    m_abandoned.push_back(*std::move(m_child));
    m_child.reset();
}

} // namespace portolan
