// Whole scans with the built-in tools beside scans with the real ones, over servers of every kind: the lists
// may differ in nothing but the servers whose names lsof misreads, which it loses or gives another's name.
#include "LsofNames.h"
#include "PortScanner_p.h"
#include "Printers.h"
#include "ProcessFacts.h"
#include "RealTools.h"
#include "TestProcess.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <memory>
#include <random>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using List = std::map<QString, Service>; ///< by id

List byId(const QList<Service> &services)
{
    EXPECT_TRUE(std::ranges::is_sorted(services, {}, &Service::port));
    List list;
    for (const Service &service : services)
        EXPECT_TRUE(list.emplace(service.id(), service).second) << "twice in the list";
    return list;
}

/// Every server counts, whatever its name: the whole machine is home.
PortScanner::ScanOptions options()
{
    PortScanner::ScanOptions options;
    options.home = u"/"_s;
    return options;
}

List builtinList()
{
    return byId(PortScanner::scan(options()));
}

List realList(const RealTools &tools)
{
    PortScanner::ScanOptions external = options();
    external.lsof = tools.lsof();
    external.ps = tools.ps();
    return byId(PortScanner::scan(external));
}

/// What cannot change from one scan to the next while a server does nothing.
QString lastingFacts(const Service &service)
{
    return u"%1 %2 '%3' '%4' '%5' %6 %7"_s.arg(service.pid)
        .arg(service.port)
        .arg(service.command, service.folderPath.value_or(u"-"_s), service.displayName,
             service.framework.rawValue(), service.stats ? u"with figures"_s : u"without figures"_s);
}

/// Whether `between` may have been read between `first` and `last`.
bool isBetween(const std::optional<ProcessStats> &first, const std::optional<ProcessStats> &between,
               const std::optional<ProcessStats> &last)
{
    if (!first || !between || !last)
        return first.has_value() == between.has_value() || last.has_value() == between.has_value();
    const auto in = [](auto a, auto value, auto b) {
        return std::min(a, b) <= value && value <= std::max(a, b);
    };
    return in(first->uptimeSeconds, between->uptimeSeconds, last->uptimeSeconds) &&
           in(first->cpuPercent, between->cpuPercent, last->cpuPercent) &&
           in(first->memoryMB, between->memoryMB, last->memoryMB);
}

QByteArray nameOf(qint32 pid)
{
    const QByteArray text = contentsOf(u"/proc/%1/comm"_s.arg(pid));
    return text.chopped(std::min<qsizetype>(1, text.size()));
}

/// The population of a test, by pid.
class Population
{
public:
    TestProcess &add()
    {
        auto process = std::make_unique<TestProcess>();
        TestProcess &added = *process;
        m_processes[added.pid()] = std::move(process);
        added.tell("listen 127.0.0.1");
        return added;
    }
    void remove(qint32 pid) { m_processes.erase(pid); }

    TestProcess &any(std::mt19937 &random)
    {
        return *std::next(m_processes.begin(), long(random() % m_processes.size()))->second;
    }

    [[nodiscard]] size_t size() const { return m_processes.size(); }
    [[nodiscard]] bool contains(qint32 pid) const { return m_processes.contains(pid); }
    [[nodiscard]] auto begin() const { return m_processes.begin(); }
    [[nodiscard]] auto end() const { return m_processes.end(); }

private:
    std::map<qint32, std::unique_ptr<TestProcess>> m_processes;
};

/// The roads' lists of one population; what they disagree in is looked at a few times, since servers come and
/// go while the slower road is under way.
class BothRoads : public testing::Test
{
protected:
    QString difference()
    {
        QString found = differenceOnce();
        for (int retries = 4; retries > 0 && !found.isEmpty(); --retries)
            found = differenceOnce();
        return found;
    }

    Population m_population;
    const RealTools m_real;

private:
    /// "" where the built-in list is what the real tools say before or after it.
    QString differenceOnce()
    {
        const List before = realList(m_real);
        const List builtin = builtinList();
        const List after = realList(m_real);
        QString differences;
        for (const List *list : {&before, &builtin, &after}) {
            for (const auto &[id, service] : *list) {
                if (isOurs(service.pid))
                    differences += differenceIn(id, service.pid, before, builtin, after);
            }
        }
        return differences;
    }

    /// Ours or a child of ours; other servers of this machine do what they like.
    [[nodiscard]] bool isOurs(qint32 pid) const
    {
        const QByteArray stat = contentsOf(u"/proc/%1/stat"_s.arg(pid));
        const qint32 parent = stat.mid(stat.lastIndexOf(')') + 4).split(' ').front().toInt();
        return m_population.contains(pid) || m_population.contains(parent);
    }

    static QString differenceIn(const QString &id, qint32 pid, const List &before, const List &builtin,
                                const List &after)
    {
        const QByteArray name = nameOf(pid);
        const auto said = builtin.find(id);
        if (said == builtin.end())
            return before.contains(id) && after.contains(id) ? id + u" is missing\n"_s : QString();
        if (isMisreadByLsof(name) || isThreadName(name)) {
            const QString right = isThreadName(name) ? u"test_process"_s : QString::fromUtf8(name);
            return said->second.command == right ? QString() : id + u" has not its own name\n"_s;
        }
        if (!before.contains(id) || !after.contains(id))
            return before.contains(id) || after.contains(id) ? QString() : id + u" is too much\n"_s;
        const Service &first = before.at(id);
        const Service &last = after.at(id);
        const QString facts = lastingFacts(said->second);
        if (facts != lastingFacts(first) && facts != lastingFacts(last))
            return facts + u"\nis not\n"_s + lastingFacts(last) + u'\n';
        return isBetween(first.stats, said->second.stats, last.stats) ? QString()
                                                                      : id + u" has other figures\n"_s;
    }
};

class BothRoadsOver : public BothRoads, public testing::WithParamInterface<unsigned>
{};

} // namespace

TEST_F(BothRoads, AgreeOnAddressesSocketsThreadsAndSharedSockets)
{
    TestProcess &process = m_population.add();
    for (const char *order :
         {"listen 0.0.0.0", "listen ::1", "listen ::", "listen :: v6only", "listen ::ffff:127.0.0.1",
          "listen 127.0.0.2", "thread", "copy 50", "fork", "zombie"})
        process.tell(order);
    EXPECT_EQ(difference(), QString());
}

TEST_F(BothRoads, AgreeOnNamesOfEveryPrintableCharacter)
{
    for (int first = ' '; first <= '~'; first += 8) {
        QByteArray name;
        for (int character = first; character < first + 8 && character <= '~'; ++character)
            name += char(character);
        m_population.add().tell("name " + name.toHex());
    }
    for (const char *name : {"next-server (v1", "", "ok (x)", "caf\xc3\xa9", "\xff", "a\nb", "MainThread"})
        m_population.add().tell("name " + QByteArray(name).toHex());
    EXPECT_EQ(difference(), QString());
    // All are there, also those that lsof loses.
    const List list = builtinList();
    for (const auto &[pid, process] : m_population) {
        EXPECT_TRUE(
            std::ranges::any_of(list, [pid = pid](const auto &entry) { return entry.second.pid == pid; }));
    }
}

TEST_F(BothRoads, AgreeOnFolders)
{
    const QTemporaryDir scratch;
    for (const char *name : {"plain", " a b ", "a\\b", "a\nb", "caf\xc3\xa9", "x (deleted)"}) {
        const QByteArray path = scratch.path().toUtf8() + '/' + name;
        ASSERT_EQ(mkdir(path.constData(), 0700), 0);
        QFile package(QFile::decodeName(path) + u"/package.json"_s);
        if (package.open(QIODevice::WriteOnly))
            package.write(R"({"name": "shop", "dependencies": {"vite": "5"}})");
        m_population.add().tell("folder " + path.toHex());
    }
    EXPECT_EQ(difference(), QString());
}

TEST_F(BothRoads, AgreeOnOtherUsersServers)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    m_population.add().tell("user 65534");
    m_population.add();
    EXPECT_EQ(difference(), QString());
}

/// Servers that start, change and die at random between the scans and during them.
TEST_P(BothRoadsOver, AChangingPopulationAgree)
{
    std::mt19937 random(GetParam());
    const QByteArray orders[] = {"listen ::1",
                                 "listen ::",
                                 "listen 0.0.0.0",
                                 "close",
                                 "fork",
                                 "thread",
                                 "zombie",
                                 "copy 40",
                                 "move 41",
                                 "compute 20",
                                 "name " + QByteArray("next-server (v1").toHex(),
                                 "name " + QByteArray("python3.12").toHex(),
                                 "name " + QByteArray("node-MainThread").toHex(),
                                 "name " + QByteArray("b) Z").toHex()};
    for (int round = 0; round < 4; ++round) {
        while (m_population.size() < 8)
            m_population.add();
        for (int changes = 0; changes < 6; ++changes) {
            TestProcess &process = m_population.any(random);
            process.tell("listen 127.0.0.1"); // so that there is one to close, copy and move
            process.tell(orders[random() % std::size(orders)]);
        }
        const qint32 victim = m_population.any(random).pid();
        const int after = int(random() % 300);
        {
            std::jthread death([victim, after] {
                std::this_thread::sleep_for(std::chrono::milliseconds(after));
                kill(victim, SIGKILL);
            });
            EXPECT_EQ(difference(), QString()) << "round " << round;
        }
        m_population.remove(victim);
        EXPECT_EQ(difference(), QString()) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, BothRoadsOver, testing::Values(1U, 2U));

} // namespace portolan
