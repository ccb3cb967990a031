// SPDX-License-Identifier: MIT
#include "FakeTools.h"
#include "FileDescriptor.h"
#include "FolderReader.h"
#include "HungMount.h"
#include "Printers.h"
#include "ProcessFacts.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr char name[] = "package.json";

using Answer = std::optional<QByteArray>;
using Kind = FolderReader::Kind;

Answer ask(const FolderReader::Question &question)
{
    FolderReader reader;
    return reader.ask({question}, {}).front();
}

/// The index of a file among the markers, as in an answer.
QByteArray place(const char *marker)
{
    const auto *const found =
        std::ranges::find_if(FolderAnswers::markers, [&](const FolderAnswers::Marker &known) {
            return std::strcmp(known.file, marker) == 0;
        });
    return QByteArray(1, char(found - FolderAnswers::markers.begin()));
}

class FolderReaderFiles : public testing::Test
{
protected:
    QString path(const QString &file) const { return m_directory.filePath(file); }
    QByteArray encoded(const QString &file) const { return QFile::encodeName(path(file)); }
    QByteArray packagePath() const { return encoded(QString::fromLatin1(name)); }
    Answer read(const char *file = name) const { return ask({Kind::File, m_directory.path(), file}); }
    Answer marker() const { return ask({Kind::Marker, m_directory.path()}); }

    void write(const QString &file, const QByteArray &bytes) const { FakeTools::write(path(file), bytes); }
    void link(const char *target) const { ASSERT_EQ(symlink(target, packagePath().constData()), 0); }
    void sparse(qint64 size) const
    {
        const FileDescriptor file(open(packagePath().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        ASSERT_EQ(ftruncate(file.get(), size), 0);
    }

    QTemporaryDir m_directory;
};

} // namespace

TEST_F(FolderReaderFiles, ReadsARegularFileWhole)
{
    write(u"package.json"_s, "{\"name\":\"\xff\0x\"}"_ba);
    EXPECT_EQ(read(), "{\"name\":\"\xff\0x\"}"_ba);
}

TEST_F(FolderReaderFiles, ReadsThroughALink)
{
    write(u"real"_s, "{}");
    link("real");
    EXPECT_EQ(read(), "{}"_ba);
}

TEST_F(FolderReaderFiles, ReadsUpToTheLimit)
{
    sparse(FolderAnswers::maxFileSize);
    EXPECT_EQ(read(), QByteArray(FolderAnswers::maxFileSize, '\0'));
}

TEST_F(FolderReaderFiles, AnEmptyFileIsAsIfAbsent)
{
    write(u"package.json"_s, "");
    EXPECT_EQ(read(), QByteArray());
}

TEST_F(FolderReaderFiles, ATooLargeFileIsAsIfAbsent)
{
    sparse(FolderAnswers::maxFileSize + 1);
    EXPECT_EQ(read(), QByteArray());
    sparse(qint64(2) * 1024 * 1024 * 1024);
    EXPECT_EQ(read(), QByteArray());
}

TEST_F(FolderReaderFiles, AFifoDoesNotBlock)
{
    ASSERT_EQ(mkfifo(packagePath().constData(), 0600), 0);
    EXPECT_EQ(read(), QByteArray());
}

TEST_F(FolderReaderFiles, ADirectoryIsNoFile)
{
    ASSERT_EQ(mkdir(packagePath().constData(), 0700), 0);
    EXPECT_EQ(read(), QByteArray());
}

TEST_F(FolderReaderFiles, ASocketIsNoFile)
{
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{.sun_family = AF_UNIX};
    std::strncpy(address.sun_path, packagePath().constData(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(read(), QByteArray());
}

struct Target
{
    const char *name;
    const char *path;
};

class FolderReaderLink : public FolderReaderFiles, public testing::WithParamInterface<Target>
{};

TEST_P(FolderReaderLink, ToWhatIsNoPlainFileIsNotRead)
{
    link(GetParam().path);
    EXPECT_EQ(read(), QByteArray());
}

INSTANTIATE_TEST_SUITE_P(Targets, FolderReaderLink,
                         testing::Values(Target{"endlessDevice", "/dev/zero"},
                                         Target{"fullDevice", "/dev/full"}, Target{"terminal", "/dev/tty"},
                                         Target{"kernelFile", "/proc/self/status"},
                                         Target{"kernelLog", "/proc/kmsg"}, Target{"folder", "/"},
                                         Target{"nothing", "/no/such/file"},
                                         Target{"itself", "package.json"}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(FolderReaderFiles, MarkersMayBeAnythingThatIsThere)
{
    EXPECT_EQ(marker(), QByteArray());
    write(u"build.gradle"_s, "");
    EXPECT_EQ(marker(), place("build.gradle"));
    ASSERT_EQ(mkdir(encoded(u"pom.xml"_s).constData(), 0700), 0);
    EXPECT_EQ(marker(), place("pom.xml"));
    ASSERT_EQ(mkfifo(encoded(u"go.mod"_s).constData(), 0600), 0);
    EXPECT_EQ(marker(), place("go.mod"));
}

TEST_F(FolderReaderFiles, DanglingAndCircularLinksAreNotThere)
{
    ASSERT_EQ(symlink("/no/such/file", encoded(u"go.mod"_s).constData()), 0);
    ASSERT_EQ(symlink("Gemfile", encoded(u"Gemfile"_s).constData()), 0);
    EXPECT_EQ(marker(), QByteArray());
    ASSERT_EQ(symlink("/", encoded(u"pom.xml"_s).constData()), 0);
    EXPECT_EQ(marker(), place("pom.xml"));
}

TEST_F(FolderReaderFiles, NamesAreExactAndNotLookedForBelow)
{
    ASSERT_TRUE(QDir(m_directory.path()).mkpath(u"below"_s));
    write(u"below/Cargo.toml"_s, "x");
    write(u"GO.MOD"_s, "x");
    EXPECT_EQ(marker(), QByteArray());
    write(u"go.mod"_s, "x");
    EXPECT_EQ(marker(), place("go.mod"));
}

TEST_F(FolderReaderFiles, SuffixesAreThoseOfDirectEntries)
{
    ASSERT_TRUE(QDir(m_directory.path()).mkpath(u"below"_s));
    write(u"below/App.sln"_s, "");
    write(u"App.SLN"_s, "");
    write(u"App.sln.user"_s, "");
    write(u"Appsln"_s, "");
    EXPECT_EQ(marker(), QByteArray());
    write(u".sln"_s, "");
    EXPECT_EQ(marker(), place(".sln"));
    write(u"App.csproj"_s, "");
    EXPECT_EQ(marker(), place(".csproj"));
}

TEST_F(FolderReaderFiles, WhatIsNoFolderHasNoFiles)
{
    write(u"package.json"_s, "{}");
    write(u"go.mod"_s, "x");
    const QString here = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_directory.path()));
    for (const QString &path : {QString(), u"/no/such/folder"_s, path(u"package.json"_s), u"."_s,
                                m_directory.path() + u" (deleted)"_s, u"/"_s + QString(5000, u'x')}) {
        EXPECT_EQ(ask({Kind::File, path, name}), QByteArray()) << path.toStdString();
        EXPECT_EQ(ask({Kind::Marker, path}), QByteArray()) << path.toStdString();
        EXPECT_EQ(ask({Kind::IsFolder, path}), QByteArray()) << path.toStdString();
    }
    ASSERT_TRUE(QDir::setCurrent(here));
    EXPECT_NE(ask({Kind::IsFolder, m_directory.path()}), QByteArray());
}

TEST_F(FolderReaderFiles, WithoutPermissionThereIsNothing)
{
    write(u"package.json"_s, "{}");
    write(u"go.mod"_s, "x");
    write(u"App.sln"_s, "x");
    const auto allow = [this](mode_t mode) {
        EXPECT_EQ(chmod(QFile::encodeName(m_directory.path()).constData(), mode), 0);
    };
    // Permissions do not stop root, so root becomes another user.
    const bool isRoot = geteuid() == 0;
    const auto look = [&](const Answer &file, const Answer &marker) {
        ASSERT_EQ(isRoot ? seteuid(65534) : 0, 0);
        EXPECT_EQ(read(), file);
        EXPECT_EQ(this->marker(), marker);
        ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);
    };

    allow(0444);
    look(QByteArray(), place(".sln")); // can be listed and not entered
    allow(0111);
    look("{}", place("go.mod"));
    allow(0755);
    ASSERT_EQ(unlink(encoded(u"go.mod"_s).constData()), 0);
    allow(0111);
    look("{}", QByteArray());
    allow(0000);
    look(QByteArray(), QByteArray());
    allow(0755);
    ASSERT_EQ(chmod(packagePath().constData(), 0000), 0);
    look(QByteArray(), place(".sln"));
}

TEST_F(FolderReaderFiles, AreReadByOneChildThatIsKept)
{
    write(u"package.json"_s, "{}");
    collectChildren();
    FolderReader reader;
    const pid_t child = reader.child();
    EXPECT_EQ(reader.ask({{Kind::File, m_directory.path(), name}}, {}).front(), "{}");
    ASSERT_TRUE(isRunning(child));
    EXPECT_EQ(contentsOf(u"/proc/%1/comm"_s.arg(child)), "portolan-files\n");
    EXPECT_EQ(entryCount(u"/proc/%1/fd"_s.arg(child)), 1) << "it has nothing of ours but the connection";
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(reader.ask({{Kind::File, m_directory.path(), name}}, {}).front(), "{}");
    EXPECT_EQ(reader.child(), child);
    EXPECT_EQ(children(), QList<pid_t>{child});
    EXPECT_EQ(entryCount(u"/proc/%1/fd"_s.arg(child)), 1);
}

TEST_F(FolderReaderFiles, AnswersManyQuestionsAtOnce)
{
    const QByteArray large(FolderAnswers::maxFileSize, 'x');
    std::vector<FolderReader::Question> questions;
    for (int i = 0; i < 2000; ++i)
        questions.push_back({Kind::File, u"/no/such/folder/"_s + QString(3000, u'x'), name});
    write(u"package.json"_s, large);
    for (int i = 0; i < 3; ++i)
        questions.push_back({Kind::File, m_directory.path(), name});
    FolderReader reader;
    const std::vector<Answer> answers = reader.ask(questions, {});
    for (size_t i = 0; i < answers.size(); ++i)
        ASSERT_TRUE(answers[i] == (i < 2000 ? QByteArray() : large)) << i;
}

TEST_F(FolderReaderFiles, AChildThatWasKilledIsReplaced)
{
    write(u"package.json"_s, "{}");
    collectChildren();
    FolderReader reader;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(kill(reader.child(), SIGKILL), 0);
        EXPECT_EQ(reader.ask({{Kind::File, m_directory.path(), name}}, {}).front(), "{}");
    }
    // The others are collected once they have ended.
    for (int i = 0; i < 1000 && children().size() > 1; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(reader.ask({{Kind::File, m_directory.path(), name}}, {}).front(), "{}");
    }
    EXPECT_EQ(children(), QList<pid_t>{reader.child()});
}

TEST_F(FolderReaderFiles, WithoutDescriptorsThereIsNoAnswerUntilThereAreSome)
{
    write(u"package.json"_s, "{}");
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    FolderReader reader;
    const Answer without = reader.ask({{Kind::File, m_directory.path(), name}}, {}).front();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(without, std::nullopt);
    EXPECT_EQ(reader.ask({{Kind::File, m_directory.path(), name}}, {}).front(), "{}");
}

TEST(FolderReader, LeavesNothingBehind)
{
    collectChildren();
    const qsizetype descriptors = openDescriptors();
    {
        FolderReader reader;
        EXPECT_NE(reader.ask({{Kind::IsFolder, u"/"_s}}, {}).front(), QByteArray());
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(children(), QList<pid_t>());
}

class FolderReaderOnADeadMount : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!m_mount)
            GTEST_SKIP() << "mounting is not permitted here";
        collectChildren();
    }

    QString folder(int number) const { return m_mount->path() + u"/shop%1"_s.arg(number); }

    const std::unique_ptr<HungMount> m_mount = HungMount::create();
};

TEST_F(FolderReaderOnADeadMount, AbandonsOneProcessForEachFolder)
{
    FolderReader reader;
    const std::vector<FolderReader::Question> questions{{Kind::IsFolder, u"/"_s},
                                                        {Kind::File, folder(1), name},
                                                        {Kind::IsFolder, u"/"_s},
                                                        {Kind::Marker, folder(1)},
                                                        {Kind::IsFolder, u"/"_s}};
    for (int run = 0; run < 3; ++run) {
        const std::vector<Answer> answers = reader.ask(questions, {.deadline = 200ms});
        for (size_t i = 0; i < answers.size(); ++i)
            EXPECT_EQ(answers[i].has_value(), i % 2 == 0) << i;
        EXPECT_EQ(children().size(), 2) << "one at work, one that hangs";
    }
    EXPECT_EQ(m_mount->taken(), 1);
    m_mount->release();
    EXPECT_TRUE(waitUntil([&] {
        return reader.ask(questions, {.deadline = 200ms})[1].has_value() && children().size() == 1;
    })) << "what has come back is asked again";
}

TEST_F(FolderReaderOnADeadMount, KeepsWhatWasReadBeforeASecondFolderHung)
{
    FolderReader reader;
    const std::vector<FolderReader::Question> questions{
        {Kind::IsFolder, u"/"_s},      {Kind::File, folder(1), name}, {Kind::IsFolder, u"/"_s},
        {Kind::File, folder(2), name}, {Kind::File, folder(3), name}, {Kind::File, folder(4), name}};
    const std::vector<Answer> answers = reader.ask(questions, {.deadline = 500ms});
    for (size_t i = 0; i < answers.size(); ++i)
        EXPECT_EQ(answers[i].has_value(), i % 2 == 0 && i < 4) << i;
}

TEST_F(FolderReaderOnADeadMount, AnAbandonedChildEndsInOrderOnceTheFileSystemAnswers)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QString::fromLatin1(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(200 * 1024, 'x')); // more than the child buffers
    file.close();
    FolderReader reader;
    const pid_t child = reader.child();
    const std::vector<FolderReader::Question> questions{{Kind::File, folder(1), name},
                                                        {Kind::File, directory.path(), name}};
    const std::vector<Answer> answers = reader.ask(questions, {.deadline = 100ms});
    EXPECT_FALSE(answers[0].has_value());
    EXPECT_TRUE(answers[1].has_value());
    m_mount->release();
    siginfo_t end = {};
    ASSERT_EQ(waitid(P_PID, id_t(child), &end, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(end.si_code, CLD_EXITED);
}

TEST_F(FolderReaderOnADeadMount, HangsInNoMoreThanThreeFoldersARun)
{
    FolderReader reader;
    std::vector<FolderReader::Question> questions;
    for (int i = 0; i < 5; ++i)
        questions.push_back({Kind::File, folder(i), name});
    questions.push_back({Kind::IsFolder, u"/"_s});
    for (const int taken : {3, 5, 5}) {
        const std::vector<Answer> answers = reader.ask(questions, {.deadline = 500ms});
        EXPECT_EQ(m_mount->taken(), taken);
        EXPECT_EQ(answers.back().has_value(), taken == 5);
    }
}

TEST_F(FolderReaderOnADeadMount, EndsAtOnceWhenStoppedOrDestroyed)
{
    const QDeadlineTimer soon(10'000);
    {
        FolderReader reader;
        std::stop_source stop;
        const std::jthread stopper([&] {
            waitUntil([&] { return m_mount->taken() > 0; });
            stop.request_stop();
        });
        EXPECT_EQ(reader.ask({{Kind::File, folder(1), name}}, {1min, stop.get_token()}).front(),
                  std::nullopt);
    }
    EXPECT_FALSE(soon.hasExpired());
    const QList<pid_t> left = children();
    ASSERT_EQ(left.size(), 1);
    EXPECT_TRUE(waitUntil([&] { return processState(left.front()) == 'D'; }))
        << "nobody can end it but the file system";
    m_mount->release();
    EXPECT_EQ(waitpid(left.front(), nullptr, 0), left.front());
}

} // namespace portolan
