// SPDX-License-Identifier: MIT
// Compares the two process sources over processes of every kind: they may differ only in the names that lsof
// gets wrong (LsofNames.h).
#include "KernelSource.h"
#include "LsofNames.h"
#include "PrintedName.h"
#include "Printers.h"
#include "ProcessFacts.h"
#include "TestProcess.h"
#include "ToolSource.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include <climits>
#include <csignal>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// What a source lists of one process.
struct Listed
{
    QString command;
    QList<qint64> ports; ///< in the order of the descriptors
    std::optional<ProcessIdentity> identity;

    friend bool operator==(const Listed &, const Listed &) = default;
};

using Listing = std::map<qint32, Listed>;

Listing listingOf(ProcessSource &source)
{
    Listing listing;
    qint32 last = 0;
    for (const RawListener &listener : source.listeners({})) {
        EXPECT_LE(std::exchange(last, listener.pid), listener.pid) << "not by ascending pid";
        Listed &listed = listing[listener.pid];
        listed.command = listener.command;
        listed.ports.append(listener.port);
        listed.identity = listener.identity;
    }
    return listing;
}

/// The process's name as the kernel has it; absent when it is gone.
std::optional<QByteArray> nameOf(qint32 pid)
{
    const QByteArray text = contentsOf(u"/proc/%1/comm"_s.arg(pid));
    return text.isEmpty() ? std::nullopt : std::optional(text.chopped(1));
}

qint32 parentOf(qint32 pid)
{
    const QByteArray stat = contentsOf(u"/proc/%1/stat"_s.arg(pid));
    return stat.mid(stat.lastIndexOf(')') + 4).split(' ').front().toInt();
}

/// The expected name where that of lsof is wrong.
QString rightName(qint32 pid, const QByteArray &name)
{
    if (isThreadName(name))
        return QFileInfo(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid))).fileName();
    return PrintedName::of(name);
}

std::optional<Listed> find(const Listing &listing, qint32 pid)
{
    const auto found = listing.find(pid);
    return found == listing.end() ? std::nullopt : std::optional(found->second);
}

/// A description of what is wrong with the kernel source's listing of `pid`, made between two listings of the
/// tools; "" if nothing is.
QByteArray problemWith(qint32 pid, const Listing &before, const Listing &kernel, const Listing &after)
{
    const auto name = nameOf(pid);
    const auto said = find(kernel, pid);
    auto first = find(before, pid);
    auto last = find(after, pid);
    if (!said)
        return first && last ? "is missing" : QByteArray();
    if (!name)
        return {}; // ended meanwhile
    const bool isWrongInLsof = isThreadName(*name) || isMisreadByLsof(*name);
    for (auto *listed : {&first, &last}) {
        if (isWrongInLsof && *listed)
            (*listed)->command = rightName(pid, *name);
    }
    if (said == first || said == last)
        return {};
    if (!first && !last)
        return isMisreadByLsof(*name) && said->command == rightName(pid, *name) ? QByteArray()
                                                                                : "is too much";
    return "is different: " + said->command.toUtf8();
}

/// Processes that change in between may differ: only what is wrong every time counts.
QByteArray settled(const std::function<QByteArray()> &findProblem)
{
    QByteArray problem = findProblem();
    for (int retries = 4; retries > 0 && !problem.isEmpty(); --retries)
        problem = findProblem();
    return problem;
}

/// The result of `work` in a process of another user.
QByteArray asNobody(const std::function<QByteArray()> &work)
{
    constexpr unsigned nobody = 65534;
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        const bool isNobody = setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
        const QByteArray result = isNobody ? work() : "cannot become nobody"_ba;
        _exit(write(ends[1], result.constData(), size_t(result.size())) == result.size() ? 0 : 1);
    }
    close(ends[1]);
    QFile reader;
    const QByteArray result =
        reader.open(ends[0], QIODevice::ReadOnly, QFile::AutoCloseHandle) ? reader.readAll() : "unreadable";
    int status = 1;
    waitpid(child, &status, 0);
    return status == 0 ? result : "ended badly: " + result;
}

bool isRoot()
{
    return geteuid() == 0;
}

/// Whether each figure of `kernel`, read between the other two, is one of them or lies between them.
bool isBetween(const std::optional<ProcessStats> &before, const std::optional<ProcessStats> &kernel,
               const std::optional<ProcessStats> &after)
{
    if (!before || !kernel || !after)
        return kernel == before || kernel == after;
    const auto between = [&](auto ProcessStats::*figure) {
        const auto [least, most] = std::minmax((*before).*figure, (*after).*figure);
        return least <= (*kernel).*figure && (*kernel).*figure <= most;
    };
    return between(&ProcessStats::uptimeSeconds) && between(&ProcessStats::cpuPercent) &&
           between(&ProcessStats::memoryMB);
}

class ProcessSources : public testing::Test
{
protected:
    TestProcess &add()
    {
        m_population.push_back(std::make_unique<TestProcess>());
        return *m_population.back();
    }
    TestProcess &addServer()
    {
        add().tell("listen 127.0.0.1");
        return *m_population.back();
    }

    Listed listed(qint32 pid) { return find(listingOf(m_kernel), pid).value_or(Listed()); }
    QString commandNow(TestProcess &process, const QByteArray &name)
    {
        process.tell("name " + name.toHex());
        return listed(process.pid()).command;
    }
    std::optional<QString> folderOf(qint32 pid) { return m_kernel.workingFolders({pid}, {}).front(); }
    std::optional<ProcessStats> statsOf(qint32 pid) { return m_kernel.stats({pid}, {}).front(); }

    /// Where the listings of the population differ; "" if nowhere.
    QByteArray listingDifference()
    {
        return settled([this] {
            const Listing before = listingOf(m_tools);
            const Listing kernel = listingOf(m_kernel);
            const Listing after = listingOf(m_tools);
            std::set<qint32> pids;
            for (const Listing *listing : {&before, &kernel, &after})
                std::ranges::transform(*listing, std::inserter(pids, pids.end()),
                                       &Listing::value_type::first);
            QByteArray problems;
            for (const qint32 pid : pids) {
                const QByteArray problem =
                    isOurs(pid) ? problemWith(pid, before, kernel, after) : QByteArray();
                if (!problem.isEmpty())
                    problems += QByteArray::number(pid) + ' ' + problem + '\n';
            }
            return problems;
        });
    }

    /// The same for folders and figures.
    QByteArray detailsDifference(qint32 pid)
    {
        return settled([this, pid]() -> QByteArray {
            const auto folder = m_tools.workingFolders({pid}, {}).front();
            const auto before = m_tools.stats({pid}, {}).front();
            const auto kernel = m_kernel.stats({pid}, {}).front();
            const auto after = m_tools.stats({pid}, {}).front();
            const bool isMisread = isMisreadByLsof(nameOf(pid).value_or("gone"));
            if (folderOf(pid) != folder && !isMisread)
                return "the folder is not " + folder.value_or(u"absent"_s).toUtf8();
            return isBetween(before, kernel, after) ? QByteArray() : "other figures";
        });
    }

    KernelSource m_kernel;
    ToolSource m_tools;
    std::vector<std::unique_ptr<TestProcess>> m_population;

private:
    [[nodiscard]] bool isOurs(qint32 pid) const
    {
        const qint32 parent = parentOf(pid);
        return std::ranges::any_of(m_population, [&](const auto &process) {
            return process->pid() == pid || process->pid() == parent;
        });
    }
};

} // namespace

TEST_F(ProcessSources, AgreeOnAddressesAndDescriptors)
{
    TestProcess &process = add();
    for (const char *host :
         {"127.0.0.1", "127.0.0.2", "127.255.255.254", "0.0.0.0", "::1", "::", "::ffff:127.0.0.1"})
        process.tell(QByteArray("listen ") + host);
    for (const char *order : {"listen :: v6only", "connect", "copy 300", "move 250", "thread"})
        process.tell(order);
    EXPECT_EQ(listingDifference(), "");
    const Listed said = listed(process.pid());
    EXPECT_EQ(said.command, u"test_process"_s);
    EXPECT_EQ(said.ports.size(), 7); // without the other loopback addresses, and the last one twice
    EXPECT_EQ(said.identity, ProcessIdentity::of(process.pid()));
}

TEST_F(ProcessSources, AgreeAsSocketsComeAndGo)
{
    TestProcess &process = add();
    for (const char *order : {"listen 127.0.0.1", "move 200", "listen ::", "connect", "fork", "close",
                              "listen ::1", "close", "thread", "zombie", "listen 0.0.0.0"}) {
        process.tell(order);
        EXPECT_EQ(listingDifference(), "") << "after " << order;
    }
}

TEST_F(ProcessSources, AgreeOnSharedSockets)
{
    TestProcess &process = addServer();
    for (int i = 0; i < 3; ++i) {
        const qint32 child = process.tell("fork").toInt();
        EXPECT_EQ(listingDifference(), "");
        EXPECT_EQ(listed(child).ports, listed(process.pid()).ports);
    }
}

TEST_F(ProcessSources, AgreeOnNames)
{
    std::vector<QByteArray> names = {"a b",
                                     " lead",
                                     "trail ",
                                     "a  b",
                                     "  ",
                                     "ok (x)",
                                     "()",
                                     "(a)(b)",
                                     "123456789012345",
                                     "caf\xc3\xa9",
                                     "caf\xe9",
                                     "\xff\xfe",
                                     "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e",
                                     "a\xc2\x85z",
                                     "\xed\xa0\x80z",
                                     "\xe2\x80\x8bz",
                                     "\xc3",
                                     "\xf3\xa0\x80\x81z",
                                     "\n",
                                     "\nz",
                                     "z\n",
                                     "a\n)\n(",
                                     "pts) S 1 (x"};
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray character(1, char(byte));
        names.push_back('a' + character + 'z');
        names.push_back(character);
    }
    for (int i = 0; i < 64; ++i)
        addServer();
    for (size_t start = 0; start < names.size(); start += m_population.size()) {
        const size_t count = std::min(m_population.size(), names.size() - start);
        for (size_t i = 0; i < count; ++i)
            m_population[i]->tell("name " + names[start + i].toHex());
        EXPECT_EQ(listingDifference(), "");
    }
}

/// A name that lsof gets wrong.
class NameThatLsofMisreads : public ProcessSources, public testing::WithParamInterface<QByteArray>
{};

TEST_P(NameThatLsofMisreads, IsRightInTheKernelSource)
{
    TestProcess &process = addServer();
    process.tell("listen ::1");
    const QList<qint64> ports = listed(process.pid()).ports;
    EXPECT_EQ(commandNow(process, GetParam()), QString::fromUtf8(GetParam()));
    EXPECT_EQ(listed(process.pid()).ports, ports);
    EXPECT_EQ(listingDifference(), "");
    EXPECT_EQ(folderOf(process.pid()), QDir::currentPath());
    EXPECT_EQ(detailsDifference(process.pid()), "");
    // If lsof ever reads such names correctly, the exception for them has to be removed. An empty one is read
    // right since lsof 4.99.
    if (!GetParam().isEmpty()) {
        EXPECT_NE(find(listingOf(m_tools), process.pid()), listed(process.pid()));
    }
}

INSTANTIATE_TEST_SUITE_P(Names, NameThatLsofMisreads,
                         testing::Values("next-server (v1", "", ")", "(", ")(", "a)b", "a) S 1 2 3",
                                         "a) Z 1 2 3", "((a)"));

TEST_F(ProcessSources, ShowTheExecutableInPlaceOfAThreadsName)
{
    TestProcess &process = addServer();
    for (const char *name : {"MainThread", "node-MainThread"}) {
        EXPECT_EQ(commandNow(process, name), u"test_process"_s);
        EXPECT_EQ(listingDifference(), "");
    }
}

TEST_F(ProcessSources, KnowTheNameOfADeletedExecutable)
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"node 24"_s);
    ASSERT_TRUE(QFile::copy(TestProcess::program(), copy));
    TestProcess process(copy);
    ASSERT_TRUE(QFile::remove(copy));
    process.tell("listen 127.0.0.1");
    EXPECT_EQ(commandNow(process, "MainThread"), u"node 24"_s);
}

TEST_F(ProcessSources, AgreeOnFolders)
{
    const QTemporaryDir scratch;
    TestProcess &process = add();
    EXPECT_EQ(detailsDifference(process.pid()), "");
    for (const char *name :
         {"plain", " a b ", "a\nb", "a\tb\\c", "caf\xc3\xa9", "caf\xe9", "(a", "x (deleted)", "a:b"}) {
        const QByteArray path = scratch.path().toUtf8() + '/' + name;
        ASSERT_EQ(mkdir(path.constData(), 0700), 0);
        process.tell("folder " + path.toHex());
        EXPECT_EQ(folderOf(process.pid()), QString::fromUtf8(path));
        EXPECT_EQ(detailsDifference(process.pid()), "") << name;
        EXPECT_EQ(rmdir(path.constData()), 0);
        EXPECT_EQ(folderOf(process.pid()), QString::fromUtf8(path) + u" (deleted)"_s);
        EXPECT_EQ(detailsDifference(process.pid()), "") << name << ", deleted";
    }
}

TEST_F(ProcessSources, OnlyTheKernelSourceKnowsAFolderWithAnEscapeCharacter)
{
    const QTemporaryDir scratch;
    const QByteArray path = scratch.path().toUtf8() + "/\x1b[1m";
    ASSERT_EQ(mkdir(path.constData(), 0700), 0);
    TestProcess &process = add();
    process.tell("folder " + path.toHex());
    EXPECT_EQ(folderOf(process.pid()), QString::fromUtf8(path));
    EXPECT_EQ(m_tools.workingFolders({process.pid()}, {}).front(), scratch.path() + u"/^[[1m"_s);
}

TEST_F(ProcessSources, AgreeOnFigures)
{
    const TestProcess &idle = add();
    TestProcess &busy = add();
    for (const char *time : {"10", "100", "300"}) {
        busy.tell(QByteArray("compute ") + time);
        EXPECT_EQ(detailsDifference(busy.pid()), "");
        EXPECT_EQ(detailsDifference(idle.pid()), "");
    }
    EXPECT_EQ(detailsDifference(1), "");
    EXPECT_EQ(detailsDifference(2), ""); // usually a thread of the kernel
}

/// Process ids of no running process.
TEST_F(ProcessSources, AgreeOnWhatIsNoLivingProcess)
{
    TestProcess &process = add();
    const qint32 zombie = process.tell("zombie").toInt();
    const qint32 thread = process.tell("thread").toInt();
    const qint32 gone = std::make_unique<TestProcess>()->pid();
    for (const qint32 pid : {zombie, thread, gone, 4194304, INT_MAX}) {
        EXPECT_EQ(detailsDifference(pid), "") << pid;
        EXPECT_EQ(folderOf(pid), std::nullopt) << pid;
        EXPECT_EQ(statsOf(pid).has_value(), pid == zombie) << pid;
    }
}

TEST_F(ProcessSources, AgreeOnAUserOfManyGroups)
{
    if (!isRoot())
        GTEST_SKIP() << "only root can join groups";
    TestProcess &process = add();
    process.tell("groups 400");
    EXPECT_EQ(detailsDifference(process.pid()), "");
}

TEST_F(ProcessSources, AgreeForAndAmongOtherUsers)
{
    if (!isRoot())
        GTEST_SKIP() << "only root can become another user";
    TestProcess &mine = add();
    TestProcess &theirs = add();
    theirs.tell("user 65534");
    for (TestProcess *process : {&mine, &theirs})
        process->tell("listen 127.0.0.1");
    const qint32 zombie = mine.tell("zombie").toInt();
    EXPECT_EQ(listingDifference(), "");
    EXPECT_EQ(asNobody([&] { return listingDifference(); }), "");
    for (const qint32 pid : {mine.pid(), theirs.pid(), zombie, 1})
        EXPECT_EQ(asNobody([&] { return detailsDifference(pid); }), "") << pid;
    EXPECT_EQ(asNobody([&] {
                  const Listing seen = listingOf(m_kernel);
                  const bool isRight = seen.contains(theirs.pid()) && !seen.contains(mine.pid()) &&
                                       folderOf(theirs.pid()) && !folderOf(mine.pid());
                  return isRight ? QByteArray() : "sees too much or too little";
              }),
              "");
}

TEST_F(ProcessSources, AnswerManyThreadsAtOnce)
{
    const TestProcess &process = addServer();
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 20; ++round)
                    wrong += listed(process.pid()).ports.size() != 1 || !folderOf(process.pid()) ||
                             !statsOf(process.pid());
            });
        }
    }
    EXPECT_EQ(wrong, 0);
}

/// Servers that start, change and die at random between the comparisons and during them.
class ChangingPopulation : public ProcessSources, public testing::WithParamInterface<unsigned>
{};

TEST_P(ChangingPopulation, MakesNoDifference)
{
    std::mt19937 random(GetParam());
    const auto pick = [&](const auto &list) -> const auto &
    {
        return list[random() % std::size(list)];
    };
    const QByteArray names[] = {"node",       "next-server (v1", "",     "a\nb",
                                "MainThread", "python3.12",      "b) Z", " "};
    const QByteArray orders[] = {
        "listen 127.0.0.1", "listen ::1",      "listen ::", "listen 0.0.0.0", "close",   "fork",
        "thread",           "zombie",          "compute 5", "copy 40",        "move 41", "fork",
        "listen :: v6only", "listen 127.0.0.3"};
    for (int round = 0; round < 10; ++round) {
        for (int births = 0; births < 3; ++births)
            addServer();
        for (int changes = 0; changes < 8; ++changes) {
            TestProcess &process = *pick(m_population);
            process.tell("listen 127.0.0.1"); // so that there is one to close, copy and move
            process.tell(random() % 3 == 0 ? "name " + pick(names).toHex() : pick(orders));
        }
        const qint32 victim = pick(m_population)->pid();
        std::jthread death([victim] { kill(victim, SIGKILL); });
        EXPECT_EQ(listingDifference(), "");
        death.join();
        std::erase_if(m_population, [&](const auto &process) { return process->pid() == victim; });
        EXPECT_EQ(listingDifference(), "");

        const Listing kernel = listingOf(m_kernel);
        for (const auto &process : m_population)
            EXPECT_TRUE(kernel.contains(process->pid()));
        EXPECT_EQ(detailsDifference(pick(m_population)->pid()), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChangingPopulation, testing::Values(1U, 2U, 3U));

} // namespace portolan
