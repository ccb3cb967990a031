// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "ScopedEnvironment.h"
#include "UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <optional>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

class UserDefaultsTest : public testing::Test
{
protected:
    QString path() const { return m_home.filePath(u"portolan/settings.json"_s); }
    QString folder() const { return m_home.filePath(u"portolan"_s); }

    void write(const QByteArray &text) const
    {
        QDir().mkpath(folder());
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    static QByteArray contentOf(const QString &file)
    {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }

    QJsonObject object() const { return QJsonDocument::fromJson(contentOf(path())).object(); }

    QTemporaryDir m_home;
};

/// Removes the write permission of a folder for a scope. Root ignores permissions, so it becomes another
/// user.
class Unwritable
{
public:
    explicit Unwritable(const QString &folder)
        : m_folder(QFile::encodeName(folder))
    {
        chmod(m_folder.constData(), 0555);
        if (getuid() != 0)
            return;
        chmod(QFile::encodeName(QFileInfo(folder).path()).constData(), 0755);
        m_changedUser = seteuid(65534) == 0;
    }
    ~Unwritable()
    {
        if (m_changedUser && seteuid(0) != 0)
            abort();
        chmod(m_folder.constData(), 0700);
    }

private:
    QByteArray m_folder;
    bool m_changedUser = false;
};

} // namespace

TEST_F(UserDefaultsTest, IsEmptyAndWritesNothingAtFirst)
{
    const UserDefaults defaults(path());
    EXPECT_EQ(defaults.string(u"sortOrder"), std::nullopt);
    EXPECT_EQ(defaults.integers(u"pinnedPorts"), std::nullopt);
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(folder()));
}

TEST_F(UserDefaultsTest, ValuesSurviveARestartWithTheirTypes)
{
    {
        UserDefaults defaults(path());
        defaults.setString(u"sortOrder", u"uptime"_s);
        defaults.setIntegers(u"pinnedPorts", {3000, 5173});
        defaults.setIntegers(u"one", {3000});
        defaults.setIntegers(u"none", {});
        defaults.setBoolean(u"autoRefresh", false);
    }
    const UserDefaults defaults(path());
    EXPECT_EQ(defaults.string(u"sortOrder"), u"uptime"_s);
    EXPECT_EQ(defaults.integers(u"pinnedPorts"), QList<qint64>({3000, 5173}));
    EXPECT_EQ(defaults.integers(u"one"), QList<qint64>({3000}));
    EXPECT_EQ(defaults.integers(u"none"), QList<qint64>());
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), false);
}

struct TypedRead
{
    const char *name;
    QByteArray json;
    bool isString;
    bool isBoolean;
    bool isIntegers;
};

class UserDefaultsTypes : public UserDefaultsTest, public testing::WithParamInterface<TypedRead>
{};

TEST_P(UserDefaultsTypes, AreReadAsWhatTheyAre)
{
    write("{\"key\": " + GetParam().json + "}");
    const UserDefaults defaults(path());
    EXPECT_EQ(defaults.string(u"key").has_value(), GetParam().isString);
    EXPECT_EQ(defaults.boolean(u"key").has_value(), GetParam().isBoolean);
    EXPECT_EQ(defaults.integers(u"key").has_value(), GetParam().isIntegers);
}

INSTANTIATE_TEST_SUITE_P(Values, UserDefaultsTypes,
                         testing::Values(TypedRead{"null", "null", false, false, false},
                                         TypedRead{"text", "\"name\"", true, false, false},
                                         TypedRead{"emptyText", "\"\"", true, false, false},
                                         TypedRead{"true", "true", false, true, false},
                                         TypedRead{"one", "1", false, false, false},
                                         TypedRead{"textTrue", "\"true\"", true, false, false},
                                         TypedRead{"object", "{}", false, false, false},
                                         TypedRead{"emptyList", "[]", false, false, true},
                                         TypedRead{"integers", "[3000, 3000, -1]", false, false, true},
                                         TypedRead{"wholeDouble", "[3000.0]", false, false, true},
                                         TypedRead{"fraction", "[3000.5]", false, false, false},
                                         TypedRead{"huge", "[1e300]", false, false, false},
                                         TypedRead{"textInList", "[3000, \"x\"]", false, false, false},
                                         TypedRead{"digits", "[\"3000\"]", false, false, false},
                                         TypedRead{"booleanInList", "[true]", false, false, false},
                                         TypedRead{"nested", "[[1]]", false, false, false}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(UserDefaultsTest, KeepsUnknownKeys)
{
    write(R"({"future": {"a": [1, null, 2.5]}, "sortOrder": "port"})");
    UserDefaults defaults(path());
    defaults.setString(u"sortOrder", u"name"_s);
    const QJsonObject expected{{u"future"_s, QJsonObject{{u"a"_s, QJsonArray{1, QJsonValue::Null, 2.5}}}},
                               {u"sortOrder"_s, u"name"_s}};
    EXPECT_EQ(object(), expected);
}

TEST_F(UserDefaultsTest, MergesWithWhatOthersHaveWritten)
{
    UserDefaults first(path());
    UserDefaults second(path());
    first.setString(u"sortOrder", u"name"_s);
    second.setBoolean(u"autoRefresh", false);
    first.setIntegers(u"pinnedPorts", {3000});
    const QJsonObject expected{
        {u"sortOrder"_s, u"name"_s}, {u"autoRefresh"_s, false}, {u"pinnedPorts"_s, QJsonArray{3000}}};
    EXPECT_EQ(object(), expected);
    EXPECT_EQ(first.boolean(u"autoRefresh"), false);
}

TEST_F(UserDefaultsTest, WritesAValueAgainIfTheFileWasRemoved)
{
    UserDefaults defaults(path());
    defaults.setString(u"sortOrder", u"name"_s);
    ASSERT_TRUE(QFile::remove(path()));
    defaults.setString(u"sortOrder", u"name"_s);
    EXPECT_EQ(object(), QJsonObject({{u"sortOrder"_s, u"name"_s}}));
}

TEST_F(UserDefaultsTest, FileIsAccessibleToTheOwnerOnly)
{
    UserDefaults(path()).setBoolean(u"autoRefresh", true);
    EXPECT_EQ(QFile::permissions(path()) & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther), 0);
    EXPECT_EQ(QFile::permissions(folder()) & (QFile::ReadGroup | QFile::ExeOther), 0);
    EXPECT_THAT(QDir(folder()).entryList(QDir::Files | QDir::Hidden),
                testing::ElementsAre(u"settings.json"_s));
}

TEST_F(UserDefaultsTest, DoesNotRewriteAnUnchangedValue)
{
    write(R"({  "autoRefresh"  :  true  })");
    UserDefaults(path()).setBoolean(u"autoRefresh", true);
    EXPECT_EQ(contentOf(path()), R"({  "autoRefresh"  :  true  })");
}

class UserDefaultsBroken : public UserDefaultsTest, public testing::WithParamInterface<const char *>
{};

TEST_P(UserDefaultsBroken, FileCountsAsEmptyAndIsRenamedByTheNextWrite)
{
    write(GetParam());
    write(GetParam());
    QFile older(path() + u".broken-1"_s);
    ASSERT_TRUE(older.open(QIODevice::WriteOnly));
    older.write("older");
    older.close();

    UserDefaults defaults(path());
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), std::nullopt);
    EXPECT_EQ(contentOf(path()), GetParam());

    defaults.setBoolean(u"autoRefresh", false);
    EXPECT_EQ(object(), QJsonObject({{u"autoRefresh"_s, false}}));
    EXPECT_EQ(contentOf(path() + u".broken-1"_s), "older");
    EXPECT_EQ(contentOf(path() + u".broken-2"_s), GetParam());

    defaults.setBoolean(u"autoRefresh", true);
    EXPECT_FALSE(QFileInfo::exists(path() + u".broken-3"_s));
}

INSTANTIATE_TEST_SUITE_P(Contents, UserDefaultsBroken,
                         testing::Values("{\"autoRefresh\": fal", "[1, 2]", "", "\xff\xfe", "null",
                                         "{\"autoRefresh\": false} x"),
                         [](const auto &row) { return std::to_string(row.index); });

TEST_F(UserDefaultsTest, DoesNotOpenAPipe)
{
    QDir().mkpath(folder());
    ASSERT_EQ(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    UserDefaults defaults(path());
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), std::nullopt);
    defaults.setBoolean(u"autoRefresh", true);
    EXPECT_EQ(object(), QJsonObject({{u"autoRefresh"_s, true}}));
}

TEST_F(UserDefaultsTest, RenamesAFolderInPlaceOfTheFile)
{
    QDir().mkpath(path() + u"/inner"_s);
    UserDefaults defaults(path());
    defaults.setBoolean(u"autoRefresh", true);
    EXPECT_EQ(object(), QJsonObject({{u"autoRefresh"_s, true}}));
    EXPECT_TRUE(QFileInfo::exists(path() + u".broken-1/inner"_s));
}

TEST_F(UserDefaultsTest, FollowsASymbolicLink)
{
    QDir().mkpath(folder());
    const QString target = m_home.filePath(u"dotfiles.json"_s);
    ASSERT_TRUE(QFile::link(target, path()));
    UserDefaults(path()).setBoolean(u"autoRefresh", true);
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_NE(contentOf(target), QByteArray());
    EXPECT_EQ(UserDefaults(path()).boolean(u"autoRefresh"), true);
}

TEST_F(UserDefaultsTest, KeepsValuesInMemoryWhileTheFolderIsNotWritable)
{
    write(R"({"autoRefresh": false})");
    UserDefaults defaults(path());
    {
        const Unwritable unwritable(folder());
        defaults.setString(u"sortOrder", u"name"_s);
        defaults.setBoolean(u"autoRefresh", true);
        EXPECT_EQ(defaults.string(u"sortOrder"), u"name"_s);
        EXPECT_EQ(defaults.boolean(u"autoRefresh"), true);
    }
    EXPECT_EQ(object(), QJsonObject({{u"autoRefresh"_s, false}}));
    defaults.setIntegers(u"pinnedPorts", {1});
    const QJsonObject expected{
        {u"sortOrder"_s, u"name"_s}, {u"autoRefresh"_s, true}, {u"pinnedPorts"_s, QJsonArray{1}}};
    EXPECT_EQ(object(), expected);
}

TEST_F(UserDefaultsTest, KeepsABrokenFileIfTheFolderIsNotWritable)
{
    write("broken");
    UserDefaults defaults(path());
    const Unwritable unwritable(folder());
    defaults.setBoolean(u"autoRefresh", true);
    EXPECT_EQ(contentOf(path()), "broken");
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), true);
}

TEST_F(UserDefaultsTest, KeepsValuesIfTheFolderCannotBeCreated)
{
    UserDefaults defaults(u"/proc/portolan/settings.json"_s);
    defaults.setBoolean(u"autoRefresh", false);
    EXPECT_EQ(defaults.boolean(u"autoRefresh"), false);
}

TEST_F(UserDefaultsTest, ReadOnlyAccessNeverWrites)
{
    UserDefaults defaults(path(), UserDefaults::Access::ReadOnly);
    defaults.setString(u"sortOrder", u"name"_s);
    EXPECT_EQ(defaults.string(u"sortOrder"), u"name"_s);
    EXPECT_FALSE(QFileInfo::exists(folder()));

    write("broken");
    defaults.setString(u"sortOrder", u"port"_s);
    EXPECT_EQ(contentOf(path()), "broken");
}

TEST_F(UserDefaultsTest, FileIsCompleteIfTheWriterIsKilled)
{
    QList<qint64> ports;
    for (int i = 0; i < 2000; ++i)
        ports.append(i);
    write(R"({"kept": true})");
    for (int round = 0; round < 20; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            UserDefaults defaults(path());
            for (int i = 0;; ++i)
                defaults.setIntegers(u"pinnedPorts", i % 2 ? ports : QList<qint64>());
        }
        usleep(1000 * (1 + round % 7));
        kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);

        const UserDefaults defaults(path());
        EXPECT_EQ(defaults.boolean(u"kept"), true);
        EXPECT_EQ(defaults.integers(u"pinnedPorts").has_value(), object().contains(u"pinnedPorts"_s));
        EXPECT_FALSE(QFileInfo::exists(path() + u".broken-1"_s));
    }
}

struct ConfigHome
{
    const char *name;
    std::optional<QByteArray> variable;
    QString path;
};

class UserDefaultsPath : public testing::TestWithParam<ConfigHome>
{};

TEST_P(UserDefaultsPath, IsInTheConfigurationFolder)
{
    const ScopedEnvironment home("HOME", "/home/ada");
    const ScopedEnvironment config("XDG_CONFIG_HOME", GetParam().variable);
    EXPECT_EQ(UserDefaults::defaultPath(), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(
    Environments, UserDefaultsPath,
    testing::Values(ConfigHome{"absolute", "/srv/config", u"/srv/config/portolan/settings.json"_s},
                    ConfigHome{"relative", "config", u"/home/ada/.config/portolan/settings.json"_s},
                    ConfigHome{"empty", "", u"/home/ada/.config/portolan/settings.json"_s},
                    ConfigHome{"unset", std::nullopt, u"/home/ada/.config/portolan/settings.json"_s}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace portolan
