// The built-in tools beside the real ones, over processes of every kind: they may differ in nothing but where
// lsof is wrong, which is in the names of processes alone.
#include "LsofNames.h"
#include "Printers.h"
#include "TestProcess.h"
#include "ToolRuns.h"

#include <QDir>
#include <QFile>
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
#include <sys/stat.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// What a listing says of one process.
struct Record
{
    QByteArray name;
    QByteArray sockets; ///< its further lines

    friend bool operator==(const Record &, const Record &) = default;
};

using Listing = std::map<int, Record>;

/// The records of a listing; fails the test when they are not by ascending pid.
Listing parse(const QByteArray &text)
{
    Listing listing;
    int pid = 0;
    for (const QByteArray &line : text.split('\n')) {
        if (line.startsWith('p')) {
            EXPECT_LT(pid, line.mid(1).toInt());
            pid = line.mid(1).toInt();
        } else if (line.startsWith('c')) {
            listing[pid].name = line.mid(1);
        } else if (!line.isEmpty()) {
            listing[pid].sockets += line + '\n';
        }
    }
    return listing;
}

/// The process's name as the kernel has it; absent when it is gone.
std::optional<QByteArray> nameOf(int pid)
{
    QFile file(u"/proc/%1/comm"_s.arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.readAll();
    return text.isEmpty() ? std::nullopt : std::optional(text.chopped(1));
}

/// How a name is to be printed where lsof's own answer is not the measure. For the names of these tests.
QByteArray rightName(int pid, const QByteArray &name)
{
    if (isThreadName(name))
        return QFileInfo(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid))).fileName().toUtf8();
    return QByteArray(name).replace("\\", "\\\\").replace("\n", "\\n");
}

/// lsof's record of a process, set right.
Record corrected(int pid, Record record)
{
    const auto name = nameOf(pid);
    if (name && (isThreadName(*name) || isMisreadByLsof(*name)))
        record.name = rightName(pid, *name);
    return record;
}

bool isOrMayBe(const Listing &listing, int pid, const Record &record)
{
    const auto found = listing.find(pid);
    return found != listing.end() && corrected(pid, found->second) == record;
}

/// What is wrong with what the built-in tool said of `pid` between two listings of the real one; "" if
/// nothing is.
QByteArray problemWith(int pid, const Listing &before, const Listing &builtin, const Listing &after)
{
    const auto name = nameOf(pid);
    const auto said = builtin.find(pid);
    if (said == builtin.end()) {
        const bool mayBeGone = !before.contains(pid) || !after.contains(pid);
        return mayBeGone ? QByteArray() : "is missing";
    }
    if (isOrMayBe(before, pid, said->second) || isOrMayBe(after, pid, said->second) || !name)
        return {};
    if (before.contains(pid) || after.contains(pid))
        return "is different: " + said->second.name + '\n' + said->second.sockets;
    return isMisreadByLsof(*name) && said->second.name == rightName(pid, *name) ? QByteArray()
                                                                                : "is too much";
}

/// What is wrong with a listing by the built-in tool, asked between two by the real one; "" if nothing is.
QByteArray listingProblem(User user)
{
    const QByteArray first = realAnswer(Invocation::listeners(), user);
    const Listing builtin = parse(builtinAnswer(Invocation::listeners(), user));
    const Listing before = parse(first);
    const Listing after = parse(realAnswer(Invocation::listeners(), user));

    std::set<int> pids;
    for (const Listing *listing : {&before, &builtin, &after})
        std::ranges::transform(*listing, std::inserter(pids, pids.end()), &Listing::value_type::first);
    QByteArray problems;
    for (const int pid : pids) {
        const QByteArray problem = problemWith(pid, before, builtin, after);
        if (!problem.isEmpty())
            problems += QByteArray::number(pid) + ' ' + problem + '\n';
    }
    return problems;
}

/// Other programs of this machine may change at the wrong moment: only what is wrong each time is.
QByteArray settled(const std::function<QByteArray()> &findProblem)
{
    QByteArray problem = findProblem();
    for (int retries = 4; retries > 0 && !problem.isEmpty(); --retries)
        problem = findProblem();
    return problem;
}

QByteArray listingDifference(User user = User::self)
{
    return settled([user] { return listingProblem(user); });
}

/// The same for an answer about one process, whose figures go on while the tools run.
QByteArray answerDifference(const Invocation &invocation, User user = User::self)
{
    return settled([&]() -> QByteArray {
        const QByteArray before = realAnswer(invocation, user);
        const QByteArray builtin = builtinAnswer(invocation, user);
        const QByteArray after = realAnswer(invocation, user);
        return builtin == before || builtin == after ? QByteArray()
                                                     : "not '" + before + "' but '" + builtin + '\'';
    });
}

Record builtinRecord(int pid)
{
    return parse(builtinAnswer(Invocation::listeners()))[pid];
}

QByteArray renaming(const QByteArray &name)
{
    return "name " + name.toHex();
}

bool isRoot()
{
    return geteuid() == 0;
}

} // namespace

TEST(ToolDifferences, NoneInAddressesAndSockets)
{
    TestProcess process;
    for (const char *host :
         {"127.0.0.1", "127.0.0.2", "127.255.255.254", "0.0.0.0", "::1", "::", "::ffff:127.0.0.1"})
        process.tell(QByteArray("listen ") + host);
    process.tell("listen :: v6only");
    process.tell("connect");
    process.tell("copy 300");
    process.tell("move 250");
    EXPECT_EQ(listingDifference(), "");
    const Record record = builtinRecord(process.pid());
    EXPECT_EQ(record.name, "test_process");
    EXPECT_EQ(record.sockets.count("\nn"), 9);
    EXPECT_EQ(record.sockets.count("TQR=1"), 2);
}

TEST(ToolDifferences, NoneAsSocketsComeAndGo)
{
    TestProcess process;
    const char *orders[] = {"listen 127.0.0.1", "move 200", "listen ::", "connect", "fork",          "close",
                            "listen ::1",       "close",    "thread",    "zombie",  "listen 0.0.0.0"};
    for (const char *order : orders) {
        process.tell(order);
        EXPECT_EQ(listingDifference(), "") << "after " << order;
    }
}

TEST(ToolDifferences, NoneInSharedSockets)
{
    TestProcess process;
    process.tell("listen 127.0.0.1");
    EXPECT_EQ(listingDifference(), "");
    std::vector<int> owners = {process.pid()};
    for (int i = 0; i < 3; ++i) {
        owners.push_back(process.tell("fork").toInt());
        EXPECT_EQ(listingDifference(), "");
    }
    for (const int pid : owners)
        EXPECT_EQ(builtinRecord(pid), builtinRecord(process.pid()));
}

TEST(ToolDifferences, NoneInNames)
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

    std::vector<std::unique_ptr<TestProcess>> processes;
    for (int i = 0; i < 24; ++i) {
        processes.push_back(std::make_unique<TestProcess>());
        processes.back()->tell("listen 127.0.0.1");
    }
    for (size_t start = 0; start < names.size(); start += processes.size()) {
        const size_t count = std::min(processes.size(), names.size() - start);
        for (size_t i = 0; i < count; ++i)
            processes[i]->tell(renaming(names[start + i]));
        EXPECT_EQ(listingDifference(), "");
    }
}

class NameThatLsofMisreads : public testing::TestWithParam<QByteArray>
{};

TEST_P(NameThatLsofMisreads, IsPrintedAsItIs)
{
    const QByteArray name = GetParam();
    TestProcess process;
    process.tell("listen 127.0.0.1");
    process.tell("listen ::1");
    const Record unnamed = builtinRecord(process.pid());
    process.tell(renaming(name));
    EXPECT_EQ(builtinRecord(process.pid()), (Record{name, unnamed.sockets}));
    EXPECT_EQ(listingDifference(), "");
    EXPECT_EQ(builtinAnswer(Invocation::workingDirectory(process.pid())),
              QStringLiteral("p%1\nn%2\n").arg(process.pid()).arg(QDir::currentPath()).toUtf8());
    EXPECT_EQ(answerDifference(Invocation::stats(process.pid())), "");
    // Should lsof ever read them right, the exception made for them here has to go.
    EXPECT_NE(realAnswer(Invocation::listeners()), builtinAnswer(Invocation::listeners()));
}

INSTANTIATE_TEST_SUITE_P(Names, NameThatLsofMisreads,
                         testing::Values("next-server (v1", "", ")", "(", ")(", "a)b", "a) S 1 2 3",
                                         "a) Z 1 2 3", "((a)"));

TEST(ToolDifferences, ThreadNameGivesWayToTheExecutable)
{
    TestProcess process;
    process.tell("listen 127.0.0.1");
    for (const char *name : {"MainThread", "node-MainThread"}) {
        process.tell(renaming(name));
        EXPECT_EQ(builtinRecord(process.pid()).name, "test_process");
        EXPECT_EQ(listingDifference(), "");
    }
}

TEST(ToolDifferences, NoneInWorkingDirectories)
{
    const QTemporaryDir scratch;
    TestProcess process;
    const auto difference = [&] { return answerDifference(Invocation::workingDirectory(process.pid())); };
    EXPECT_EQ(difference(), "");
    for (const char *name : {"plain", " a b ", "a\nb", "a\tb\\c", "caf\xc3\xa9", "caf\xe9", "(a",
                             "x (deleted)", "a:b", "\x1b[1m"}) {
        const QByteArray path = scratch.path().toUtf8() + '/' + name;
        ASSERT_EQ(mkdir(path.constData(), 0700), 0);
        process.tell("folder " + path.toHex());
        EXPECT_EQ(difference(), "") << name;
        process.tell("folder " + QByteArray("/").toHex());
        EXPECT_EQ(rmdir(path.constData()), 0);
    }
    const QByteArray deleted = scratch.path().toUtf8() + "/deleted";
    mkdir(deleted.constData(), 0700);
    process.tell("folder " + deleted.toHex());
    rmdir(deleted.constData());
    EXPECT_EQ(difference(), "");
    EXPECT_TRUE(builtinAnswer(Invocation::workingDirectory(process.pid())).endsWith("/deleted (deleted)\n"));
}

TEST(ToolDifferences, NoneInFigures)
{
    TestProcess idle;
    TestProcess busy;
    for (const char *time : {"10", "30", "100", "300"}) {
        busy.tell(QByteArray("compute ") + time);
        EXPECT_EQ(answerDifference(Invocation::stats(busy.pid())), "");
        EXPECT_EQ(answerDifference(Invocation::stats(idle.pid())), "");
    }
    EXPECT_EQ(answerDifference(Invocation::stats(1)), "");
    EXPECT_EQ(answerDifference(Invocation::stats(2)), ""); // usually a thread of the kernel
}

/// Process ids that name no process that lives.
TEST(ToolDifferences, NoneInWhatIsNoLivingProcess)
{
    TestProcess process;
    const int zombie = process.tell("zombie").toInt();
    const int thread = process.tell("thread").toInt();
    int gone = 0;
    {
        TestProcess ended;
        gone = ended.pid();
    }
    for (const int pid : {zombie, thread, gone, 4194304, INT_MAX}) {
        EXPECT_EQ(answerDifference(Invocation::workingDirectory(pid)), "") << pid;
        EXPECT_EQ(answerDifference(Invocation::stats(pid)), "") << pid;
        EXPECT_EQ(builtinAnswer(Invocation::workingDirectory(pid)), "");
    }
    EXPECT_TRUE(builtinAnswer(Invocation::stats(zombie)).endsWith("  0.0     0\n"));
}

TEST(ToolDifferences, NoneForAUserOfManyGroups)
{
    if (!isRoot())
        GTEST_SKIP() << "only root can join groups";
    TestProcess process;
    process.tell("groups 400");
    EXPECT_EQ(answerDifference(Invocation::stats(process.pid())), "");
}

TEST(ToolDifferences, NoneForAndAmongOtherUsers)
{
    if (!isRoot())
        GTEST_SKIP() << "only root can become another user";
    TestProcess mine;
    TestProcess theirs;
    theirs.tell("user 65534");
    for (TestProcess *process : {&mine, &theirs}) {
        process->tell("listen 127.0.0.1");
        process->tell(renaming("user's"));
    }
    const int zombie = mine.tell("zombie").toInt();
    EXPECT_EQ(listingDifference(User::self), "");
    EXPECT_EQ(listingDifference(User::nobody), "");
    const Listing seen = parse(builtinAnswer(Invocation::listeners(), User::nobody));
    EXPECT_TRUE(seen.contains(theirs.pid()));
    EXPECT_FALSE(seen.contains(mine.pid()));
    for (const int pid : {mine.pid(), theirs.pid(), zombie, 1}) {
        EXPECT_EQ(answerDifference(Invocation::workingDirectory(pid), User::nobody), "") << pid;
        EXPECT_EQ(answerDifference(Invocation::stats(pid), User::nobody), "") << pid;
    }
    EXPECT_TRUE(builtinAnswer(Invocation::workingDirectory(mine.pid()), User::nobody)
                    .endsWith("/cwd (readlink: Permission denied)\n"));
}

/// Servers that start, change and die at random between the comparisons and during them.
class ChangingPopulation : public testing::TestWithParam<unsigned>
{};

TEST_P(ChangingPopulation, MakesNoDifference)
{
    std::mt19937 random(GetParam());
    const auto pick = [&](const auto &list) { return list[random() % std::size(list)]; };
    const QByteArray names[] = {"node",       "next-server (v1", "",     "a\nb",
                                "MainThread", "python3.12",      "b) Z", " "};
    const QByteArray orders[] = {
        "listen 127.0.0.1", "listen ::1",      "listen ::", "listen 0.0.0.0", "close",   "fork",
        "thread",           "zombie",          "compute 5", "copy 40",        "move 41", "fork",
        "listen :: v6only", "listen 127.0.0.3"};
    std::vector<std::unique_ptr<TestProcess>> population;
    for (int round = 0; round < 15; ++round) {
        for (int births = 0; births < 3; ++births) {
            population.push_back(std::make_unique<TestProcess>());
            population.back()->tell("listen 127.0.0.1");
        }
        for (int changes = 0; changes < 8; ++changes) {
            TestProcess &process = *population[random() % population.size()];
            process.tell("listen 127.0.0.1"); // so that there is one to close, copy and move
            process.tell(random() % 3 == 0 ? renaming(pick(names)) : pick(orders));
        }
        const int victim = population[random() % population.size()]->pid();
        std::jthread death([victim] { kill(victim, SIGKILL); });
        EXPECT_EQ(listingDifference(), "");
        death.join();
        std::erase_if(population, [&](const auto &process) { return process->pid() == victim; });
        EXPECT_EQ(listingDifference(), "");

        const Listing builtin = parse(builtinAnswer(Invocation::listeners()));
        for (const auto &process : population)
            EXPECT_TRUE(builtin.contains(process->pid()));
        const int pid = population[random() % population.size()]->pid();
        if (!isMisreadByLsof(nameOf(pid).value_or(QByteArray()))) {
            EXPECT_EQ(answerDifference(Invocation::workingDirectory(pid)), "");
        }
        EXPECT_EQ(answerDifference(Invocation::stats(pid)), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChangingPopulation, testing::Values(1U, 2U, 3U));

} // namespace portolan
