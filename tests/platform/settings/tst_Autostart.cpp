// SPDX-License-Identifier: MIT
#include "Autostart.h"
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// A session with temporary folders.
class AutostartTest : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString userFile() const { return path(u"user/autostart/portolan.desktop"_s); }
    [[nodiscard]] QString systemFile() const { return path(u"system/autostart/portolan.desktop"_s); }

    [[nodiscard]] Autostart::Session session() const
    {
        return {.userFolder = path(u"user/autostart"_s),
                .systemFolders = {path(u"none/autostart"_s), path(u"system/autostart"_s)},
                .desktops = {u"XFCE"_s},
                .program = u"/bin/true"_s};
    }
    [[nodiscard]] Autostart autostart() const { return Autostart(session()); }

    static void write(const QString &file, const QByteArray &text)
    {
        QDir().mkpath(QFileInfo(file).path());
        QFile target(file);
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(text);
    }

    static QByteArray read(const QString &file)
    {
        QFile source(file);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray("(none)");
    }

    QTemporaryDir m_folder;
};

struct EntryCase
{
    const char *name;
    QByteArray keys; ///< the lines of the user's entry
    bool isEnabled;
};

class AutostartEntry : public AutostartTest, public testing::WithParamInterface<EntryCase>
{};

} // namespace

TEST_P(AutostartEntry, FollowsTheEntry)
{
    write(userFile(), "[Desktop Entry]\nType=Application\n" + GetParam().keys);
    EXPECT_EQ(autostart().isEnabled(), GetParam().isEnabled);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, AutostartEntry,
    testing::Values(
        EntryCase{"plain", "Exec=/bin/true\n", true},
        EntryCase{"arguments", "Exec=/bin/true --background\nTryExec=/bin/true\n", true},
        EntryCase{"onPath", "Exec=sh --background\nTryExec=sh\n", true},
        EntryCase{"allOn",
                  "Exec=sh\nHidden=false\nX-GNOME-Autostart-enabled=true\nX-MATE-Autostart-enabled=true\n",
                  true},
        EntryCase{"noExec", "Name=x\n", false}, EntryCase{"emptyExec", "Exec=\n", false},
        EntryCase{"goneExec", "Exec=/no/such/program\n", false},
        EntryCase{"notOnPath", "Exec=no-such-program\n", false},
        EntryCase{"notExecutable", "Exec=/etc/passwd\n", false}, EntryCase{"folder", "Exec=/tmp\n", false},
        EntryCase{"goneTryExec", "Exec=/bin/true\nTryExec=/no/such/program\n", false},
        EntryCase{"goneAndHidden", "Exec=/no/such/program\nHidden=true\n", false},
        EntryCase{"hidden", "Exec=sh\nHidden=true\n", false},
        EntryCase{"gnomeOff", "Exec=sh\nX-GNOME-Autostart-enabled=false\n", false},
        EntryCase{"mateOff", "Exec=sh\nX-MATE-Autostart-enabled=false\n", false},
        EntryCase{"onlyOthers", "Exec=sh\nOnlyShowIn=GNOME;KDE;\n", false},
        EntryCase{"onlyShowInEmpty", "Exec=sh\nOnlyShowIn=\n", false},
        EntryCase{"onlyThis", "Exec=sh\nOnlyShowIn=GNOME;XFCE;\n", true},
        EntryCase{"notThis", "Exec=sh\nNotShowIn=XFCE\n", false},
        EntryCase{"notOthers", "Exec=sh\nNotShowIn=KDE;\n", true}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(AutostartTest, IsOffWithoutAnEntry)
{
    EXPECT_FALSE(autostart().isEnabled());
    EXPECT_FALSE(QFile::exists(path(u"user"_s))) << "looking creates nothing";
}

TEST_F(AutostartTest, PrefersTheUsersEntryToTheSystems)
{
    write(systemFile(), "[Desktop Entry]\nExec=/bin/true\n");
    EXPECT_TRUE(autostart().isEnabled());
    write(userFile(), "[Desktop Entry]\nExec=/bin/true\nHidden=true\n");
    EXPECT_FALSE(autostart().isEnabled());
}

TEST_F(AutostartTest, IsOffWithoutFolderOrProgram)
{
    Autostart::Session noFolder = session();
    noFolder.userFolder.clear();
    EXPECT_FALSE(Autostart(noFolder).isEnabled());
    EXPECT_FALSE(Autostart(noFolder).add());

    Autostart::Session noProgram = session();
    noProgram.program.clear();
    EXPECT_FALSE(Autostart(noProgram).isEnabled());
    EXPECT_FALSE(Autostart(noProgram).add());
    EXPECT_FALSE(QFile::exists(userFile()));
}

TEST_F(AutostartTest, IgnoresWhatIsNotAFile)
{
    QDir().mkpath(path(u"user/autostart"_s));
    ASSERT_EQ(mkfifo(QFile::encodeName(userFile()).constData(), 0600), 0);
    EXPECT_FALSE(autostart().isEnabled());
}

TEST_F(AutostartTest, WritesANewEntry)
{
    EXPECT_TRUE(autostart().add());
    EXPECT_TRUE(autostart().isEnabled());
    EXPECT_EQ(read(userFile()), "[Desktop Entry]\n"
                                "Type=Application\n"
                                "Name=Portolan\n"
                                "Comment=Development servers in the system tray\n"
                                "Exec=/bin/true --background\n"
                                "TryExec=/bin/true\n"
                                "Icon=portolan\n"
                                "Terminal=false\n"
                                "StartupNotify=false\n"
                                "X-GNOME-Autostart-enabled=true\n");
    EXPECT_EQ(int(QFile::permissions(userFile())) & 0x0777, 0x0644);
    EXPECT_EQ(QDir(path(u"user/autostart"_s)).entryList(QDir::Files | QDir::Hidden),
              QStringList{u"portolan.desktop"_s});
}

TEST_F(AutostartTest, ReplacesADisabledOrBrokenEntry)
{
    write(userFile(), "[Desktop Entry]\nType=Application\nHidden=true\nExec=/gone --old\n"
                      "X-GNOME-Autostart-enabled=false\nX-MATE-Autostart-enabled=false\n");
    EXPECT_FALSE(autostart().isEnabled());
    EXPECT_TRUE(autostart().add());
    EXPECT_TRUE(autostart().isEnabled());
}

TEST_F(AutostartTest, RemovesTheUsersEntry)
{
    autostart().add();
    EXPECT_TRUE(autostart().remove());
    EXPECT_FALSE(QFile::exists(userFile()));
    EXPECT_FALSE(autostart().isEnabled());
    EXPECT_FALSE(autostart().remove());
}

TEST_F(AutostartTest, HidesTheSystemsEntry)
{
    write(systemFile(), "[Desktop Entry]\nExec=/bin/true\n");
    EXPECT_TRUE(autostart().remove());
    EXPECT_FALSE(autostart().isEnabled());
    EXPECT_EQ(read(systemFile()), "[Desktop Entry]\nExec=/bin/true\n");
    EXPECT_TRUE(autostart().add());
    EXPECT_TRUE(autostart().isEnabled());
}

TEST_F(AutostartTest, FailsIfItCannotWrite)
{
    if (getuid() == 0)
        // Permissions do not stop root, but a file in place of the folder does.
        write(path(u"user"_s), "a file");
    else
        ASSERT_TRUE(QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_FALSE(autostart().add());
    EXPECT_FALSE(autostart().isEnabled());
    QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(AutostartTest, ReadsTheSessionFromTheEnvironment)
{
    const ScopedEnvironment config("XDG_CONFIG_HOME", path(u"user"_s).toLocal8Bit());
    const ScopedEnvironment system("XDG_CONFIG_DIRS", path(u"system"_s).toLocal8Bit());
    const ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "Unity:XFCE");
    ASSERT_TRUE(Autostart::ofThisProgram().add());
    const DesktopEntry entry(read(userFile()));
    EXPECT_EQ(DesktopEntry::programOf(*entry.value("Exec")), QCoreApplication::applicationFilePath());
    EXPECT_EQ(DesktopEntry::unescaped(*entry.value("TryExec")), QCoreApplication::applicationFilePath());
    EXPECT_TRUE(Autostart::ofThisProgram().isEnabled());

    write(userFile(), "[Desktop Entry]\nExec=sh\nNotShowIn=XFCE;\n");
    EXPECT_FALSE(Autostart::ofThisProgram().isEnabled());
    QFile::remove(userFile());
    write(systemFile(), "[Desktop Entry]\nExec=sh\n");
    EXPECT_TRUE(Autostart::ofThisProgram().isEnabled());
}

TEST_F(AutostartTest, IsOffWithoutAHomeFolder)
{
    const ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
    const ScopedEnvironment home("HOME", std::nullopt);
    EXPECT_FALSE(Autostart::ofThisProgram().isEnabled());
    EXPECT_FALSE(Autostart::ofThisProgram().add());
}

TEST_F(AutostartTest, StartsTheAppImageThatItRunsFrom)
{
    const ScopedEnvironment config("XDG_CONFIG_HOME", path(u"user"_s).toLocal8Bit());
    const ScopedEnvironment image("APPIMAGE", "/bin/sh");
    const auto program = [this] {
        Autostart::ofThisProgram().add();
        return DesktopEntry::programOf(*DesktopEntry(read(userFile())).value("Exec"));
    };
    {
        const ScopedEnvironment mount("APPDIR", QCoreApplication::applicationDirPath().toLocal8Bit());
        EXPECT_EQ(program(), u"/bin/sh"_s);
    }
    const ScopedEnvironment mount("APPDIR", "/tmp/.mount_other");
    EXPECT_EQ(program(), QCoreApplication::applicationFilePath());
}

/// A program in a folder whose name is the parameter.
class AutostartPrograms : public AutostartTest, public testing::WithParamInterface<QString>
{
protected:
    void SetUp() override
    {
        m_program = m_programs.install(GetParam() + u"/portolan"_s);
        Autostart::Session here = session();
        here.program = m_program;
        ASSERT_TRUE(Autostart(here).add());
        ASSERT_TRUE(Autostart(here).isEnabled());
    }

    /// The lines of the unit that systemd's generator creates from the entry.
    [[nodiscard]] QList<QByteArray> systemdUnit(const QString &generator) const
    {
        const QString units = path(u"units"_s);
        QDir().mkpath(units);
        const ScopedEnvironment config("XDG_CONFIG_HOME", path(u"user"_s).toLocal8Bit());
        const ScopedEnvironment system("XDG_CONFIG_DIRS", path(u"system"_s).toLocal8Bit());
        QProcess::execute(generator, {units, units, units});
        return read(units + u"/app-portolan@autostart.service"_s).split('\n');
    }

    FakePrograms m_programs;
    QString m_program;
};

TEST_P(AutostartPrograms, PassDesktopFileValidate)
{
    QProcess validator;
    validator.start(u"desktop-file-validate"_s, {userFile()});
    if (!validator.waitForStarted())
        GTEST_SKIP() << "desktop-file-validate is not installed";
    ASSERT_TRUE(validator.waitForFinished());
    EXPECT_EQ(validator.exitCode(), 0);
    EXPECT_EQ(validator.readAll(), "");
}

TEST_P(AutostartPrograms, AreStartedByADesktop)
{
    QProcess launcher;
    launcher.start(u"gio"_s, {u"launch"_s, userFile()});
    if (!launcher.waitForStarted())
        GTEST_SKIP() << "gio is not installed";
    ASSERT_TRUE(launcher.waitForFinished());
    EXPECT_EQ(m_programs.record(GetParam() + u"/portolan"_s).arguments, QStringList{u"--background"_s});
}

TEST_P(AutostartPrograms, AreStartedBySystemd)
{
    const QString generator = u"/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"_s;
    if (!QFile::exists(generator))
        GTEST_SKIP() << "systemd's generator of autostart units is not installed";
    if (GetParam().contains(u'\\'))
        GTEST_SKIP() << "systemd looks up the program before it unescapes its path";
    const QString quoted = QString(m_program).replace(QRegularExpression(u"([$\"`])"_s), u"\\\\1"_s);
    const bool isPlain = GetParam() == u"plain"_s || GetParam() == u"größe"_s;
    const QString word = isPlain ? m_program : u'"' + quoted + u'"';
    EXPECT_THAT(systemdUnit(generator),
                testing::Contains(QByteArray("ExecStart=:" + word.toUtf8() + " --background")));
}

// Without %: GLib and systemd look up the program before they replace the %% that the standard demands.
INSTANTIATE_TEST_SUITE_P(Folders, AutostartPrograms,
                         testing::Values(u"plain"_s, u"two words"_s, u"it's \"quoted\""_s, u"$HOME `id`"_s,
                                         u"back\\slash"_s, u"größe"_s));

} // namespace portolan
