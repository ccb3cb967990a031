#include "FakeTools.h"
#include "FileDescriptor.h"
#include "Printers.h"
#include "ProjectFolder.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr char name[] = "package.json";

class ProjectFolderFiles : public testing::Test
{
protected:
    QString path(const QString &file) const { return m_directory.filePath(file); }
    QByteArray encoded(const QString &file) const { return QFile::encodeName(path(file)); }
    QByteArray packagePath() const { return encoded(QString::fromLatin1(name)); }
    ProjectFolder folder() const { return ProjectFolder(m_directory.path()); }

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

TEST_F(ProjectFolderFiles, ReadsARegularFileWhole)
{
    write(u"package.json"_s, "{\"name\":\"\xff\0x\"}"_ba);
    EXPECT_EQ(folder().read(name), "{\"name\":\"\xff\0x\"}"_ba);
}

TEST_F(ProjectFolderFiles, ReadsThroughALink)
{
    write(u"real"_s, "{}");
    link("real");
    EXPECT_EQ(folder().read(name), "{}"_ba);
}

TEST_F(ProjectFolderFiles, ReadsUpToTheLimit)
{
    sparse(ProjectFolder::maxFileSize);
    EXPECT_EQ(folder().read(name), QByteArray(ProjectFolder::maxFileSize, '\0'));
}

TEST_F(ProjectFolderFiles, AnEmptyFileIsAsIfAbsent)
{
    write(u"package.json"_s, "");
    EXPECT_EQ(folder().read(name), std::nullopt);
    EXPECT_TRUE(folder().contains(name));
}

TEST_F(ProjectFolderFiles, ATooLargeFileIsAsIfAbsent)
{
    sparse(ProjectFolder::maxFileSize + 1);
    EXPECT_EQ(folder().read(name), std::nullopt);
    sparse(qint64(2) * 1024 * 1024 * 1024);
    EXPECT_EQ(folder().read(name), std::nullopt);
}

TEST_F(ProjectFolderFiles, AFifoDoesNotBlock)
{
    ASSERT_EQ(mkfifo(packagePath().constData(), 0600), 0);
    EXPECT_EQ(folder().read(name), std::nullopt);
    EXPECT_TRUE(folder().contains(name));
}

TEST_F(ProjectFolderFiles, ADirectoryIsNoFile)
{
    ASSERT_EQ(mkdir(packagePath().constData(), 0700), 0);
    EXPECT_EQ(folder().read(name), std::nullopt);
    EXPECT_TRUE(folder().contains(name));
}

TEST_F(ProjectFolderFiles, ASocketIsNoFile)
{
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{.sun_family = AF_UNIX};
    std::strncpy(address.sun_path, packagePath().constData(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(folder().read(name), std::nullopt);
}

struct Target
{
    const char *name;
    const char *path;
};

class ProjectFolderLink : public ProjectFolderFiles, public testing::WithParamInterface<Target>
{};

TEST_P(ProjectFolderLink, ToWhatIsNoPlainFileIsNotRead)
{
    link(GetParam().path);
    EXPECT_EQ(folder().read(name), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Targets, ProjectFolderLink,
                         testing::Values(Target{"endlessDevice", "/dev/zero"},
                                         Target{"fullDevice", "/dev/full"}, Target{"terminal", "/dev/tty"},
                                         Target{"kernelFile", "/proc/self/status"},
                                         Target{"kernelLog", "/proc/kmsg"}, Target{"folder", "/"},
                                         Target{"nothing", "/no/such/file"},
                                         Target{"itself", "package.json"}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(ProjectFolderFiles, DanglingAndCircularLinksAreNotThere)
{
    link("/no/such/file");
    EXPECT_FALSE(folder().contains(name));
    ASSERT_EQ(unlink(packagePath().constData()), 0);
    link(name);
    EXPECT_FALSE(folder().contains(name));
}

TEST_F(ProjectFolderFiles, NamesAreExactAndNotLookedForBelow)
{
    ASSERT_TRUE(QDir(m_directory.path()).mkpath(u"below"_s));
    write(u"below/Cargo.toml"_s, "x");
    write(u"go.mod"_s, "x");
    EXPECT_FALSE(folder().contains("Cargo.toml"));
    EXPECT_FALSE(folder().contains("GO.MOD"));
    EXPECT_TRUE(folder().contains("go.mod"));
}

TEST_F(ProjectFolderFiles, SuffixesAreThoseOfDirectEntries)
{
    EXPECT_FALSE(folder().containsNameWithSuffix(".sln"));
    ASSERT_TRUE(QDir(m_directory.path()).mkpath(u"below"_s));
    write(u"below/App.sln"_s, "");
    write(u"App.SLN"_s, "");
    write(u"App.sln.user"_s, "");
    write(u"Appsln"_s, "");
    EXPECT_FALSE(folder().containsNameWithSuffix(".sln"));
    write(u".sln"_s, "");
    EXPECT_TRUE(folder().containsNameWithSuffix(".sln"));
}

TEST_F(ProjectFolderFiles, WhatIsNoFolderHasNoFiles)
{
    write(u"package.json"_s, "{}");
    const QString here = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_directory.path()));
    for (const QString &path : {QString(), u"/no/such/folder"_s, path(u"package.json"_s), u"."_s,
                                m_directory.path() + u" (deleted)"_s}) {
        const ProjectFolder none(path);
        EXPECT_EQ(none.read(name), std::nullopt) << path.toStdString();
        EXPECT_FALSE(none.contains(name)) << path.toStdString();
        EXPECT_FALSE(none.containsNameWithSuffix(".json")) << path.toStdString();
    }
    ASSERT_TRUE(QDir::setCurrent(here));
}

TEST_F(ProjectFolderFiles, WithoutPermissionThereIsNothing)
{
    write(u"package.json"_s, "{}");
    const auto allow = [this](mode_t mode) {
        EXPECT_EQ(chmod(QFile::encodeName(m_directory.path()).constData(), mode), 0);
    };
    // Root is refused nothing, so root looks with another user's eyes.
    const bool isRoot = geteuid() == 0;
    const auto look = [&](const std::function<void()> &expectations) {
        ASSERT_EQ(isRoot ? seteuid(65534) : 0, 0);
        expectations();
        ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);
    };

    allow(0444);
    look([&] {
        EXPECT_EQ(folder().read(name), std::nullopt);
        EXPECT_FALSE(folder().contains(name));
    });
    allow(0111);
    look([&] {
        EXPECT_TRUE(folder().contains(name));
        EXPECT_FALSE(folder().containsNameWithSuffix(".json"));
    });
    allow(0000);
    look([&] {
        EXPECT_FALSE(folder().contains(name));
        EXPECT_FALSE(folder().containsNameWithSuffix(".json"));
    });
    allow(0755);
    ASSERT_EQ(chmod(packagePath().constData(), 0000), 0);
    look([&] {
        EXPECT_EQ(folder().read(name), std::nullopt);
        EXPECT_TRUE(folder().contains(name));
    });
}

} // namespace portolan
