// SPDX-License-Identifier: MIT
#include "FakePrograms.h"
#include "Printers.h"
#include "ScopedEnvironment.h"
#include "Terminal.h"
#include "Terminal_p.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

const QString script = u"cd '/w/a b'; exec '/bin/sh'"_s;
const QStringList shell{u"/bin/sh"_s, u"-c"_s, script};

} // namespace

/// An environment in which only fake programs are found.
class TerminalChoice : public testing::Test
{
protected:
    TerminalChoice()
    {
        m_environment.insert(u"PATH"_s, m_programs.folder());
        m_environment.insert(u"SHELL"_s, u"/bin/sh"_s);
    }

    void install(const QStringList &names)
    {
        for (const QString &name : names)
            m_programs.install(name);
    }

    /// The name of the program that would be started.
    QString chosen() const
    {
        const auto command = Terminal::commandFor(u"/w/a b"_s, m_environment);
        return command ? QFileInfo(command->program).fileName() : QString();
    }

    QStringList arguments() const
    {
        const auto command = Terminal::commandFor(u"/w/a b"_s, m_environment);
        return command ? command->arguments : QStringList();
    }

    FakePrograms m_programs;
    QProcessEnvironment m_environment;
};

struct EmulatorCase
{
    const char *name;
    QStringList options; ///< the arguments before the shell
};

class EmulatorArguments : public TerminalChoice, public testing::WithParamInterface<EmulatorCase>
{};

TEST_P(EmulatorArguments, SetFolderAndCommand)
{
    install({QString::fromLatin1(GetParam().name)});
    EXPECT_EQ(chosen(), QString::fromLatin1(GetParam().name));
    EXPECT_EQ(arguments(), GetParam().options + shell);
}

INSTANTIATE_TEST_SUITE_P(
    All, EmulatorArguments,
    testing::Values(EmulatorCase{"gnome-terminal", {u"--working-directory=/w/a b"_s, u"--"_s}},
                    EmulatorCase{"mate-terminal", {u"--working-directory=/w/a b"_s, u"-x"_s}},
                    EmulatorCase{"xfce4-terminal", {u"--working-directory=/w/a b"_s, u"-x"_s}},
                    EmulatorCase{"lxterminal", {u"--working-directory=/w/a b"_s, u"-e"_s}},
                    EmulatorCase{"terminator", {u"--working-directory=/w/a b"_s, u"-x"_s}},
                    EmulatorCase{"kgx", {u"--working-directory=/w/a b"_s, u"--"_s}},
                    EmulatorCase{"alacritty", {u"--working-directory=/w/a b"_s, u"-e"_s}},
                    EmulatorCase{"ghostty", {u"--working-directory=/w/a b"_s, u"-e"_s}},
                    EmulatorCase{"ptyxis", {u"--new-window"_s, u"--working-directory=/w/a b"_s, u"--"_s}},
                    EmulatorCase{"konsole", {u"--workdir"_s, u"/w/a b"_s, u"-e"_s}},
                    EmulatorCase{"qterminal", {u"--workdir"_s, u"/w/a b"_s, u"-e"_s}},
                    EmulatorCase{"kitty", {u"--directory"_s, u"/w/a b"_s}},
                    EmulatorCase{"foot", {u"--working-directory=/w/a b"_s}},
                    EmulatorCase{"wezterm", {u"start"_s, u"--cwd"_s, u"/w/a b"_s, u"--"_s}},
                    EmulatorCase{"xterm", {u"-e"_s}}, EmulatorCase{"st", {u"-e"_s}},
                    EmulatorCase{"urxvt", {u"-e"_s}}, EmulatorCase{"xdg-terminal-exec", {}},
                    EmulatorCase{"x-terminal-emulator", {u"-e"_s}}),
    [](const auto &row) {
        std::string name = row.param.name;
        std::erase(name, '-');
        return name;
    });

TEST_F(TerminalChoice, PrefersTheUsersThenTheDesktopsThenTheSystems)
{
    m_environment.insert(u"TERMINAL"_s, u"mine"_s);
    m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"Unity:XFCE"_s);
    const QStringList inOrder{u"xdg-terminal-exec"_s,   u"mine"_s,    u"xfce4-terminal"_s,
                              u"x-terminal-emulator"_s, u"konsole"_s, u"xterm"_s};
    install(inOrder);
    for (const QString &name : inOrder) {
        EXPECT_EQ(chosen(), name);
        QFile::remove(m_programs.path(name));
    }
    EXPECT_EQ(chosen(), QString());
}

struct DesktopCase
{
    const char *desktop;
    const char *emulator;
};

class DesktopEmulator : public TerminalChoice, public testing::WithParamInterface<DesktopCase>
{};

TEST_P(DesktopEmulator, IsPreferredOnItsDesktop)
{
    install({u"x-terminal-emulator"_s, u"gnome-terminal"_s, u"konsole"_s, u"xfce4-terminal"_s,
             u"mate-terminal"_s, u"qterminal"_s});
    m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, QString::fromLatin1(GetParam().desktop));
    EXPECT_EQ(chosen(), QString::fromLatin1(GetParam().emulator));
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, DesktopEmulator,
    testing::Values(DesktopCase{"GNOME", "gnome-terminal"}, DesktopCase{"ubuntu:GNOME", "gnome-terminal"},
                    DesktopCase{"KDE", "konsole"}, DesktopCase{"XFCE", "xfce4-terminal"},
                    DesktopCase{"MATE", "mate-terminal"}, DesktopCase{"LXQt", "qterminal"},
                    DesktopCase{"sway", "x-terminal-emulator"}, DesktopCase{"", "x-terminal-emulator"}));

TEST_F(TerminalChoice, AcceptsAPathInTheVariable)
{
    install({u"elsewhere/kitty"_s, u"xterm"_s});
    m_environment.insert(u"TERMINAL"_s, m_programs.path(u"elsewhere/kitty"_s));
    EXPECT_EQ(chosen(), u"kitty"_s);
    EXPECT_EQ(arguments().first(), u"--directory"_s);
}

TEST_F(TerminalChoice, SkipsWhatIsNotInstalled)
{
    install({u"xterm"_s});
    m_environment.insert(u"TERMINAL"_s, u"/gone/kitty"_s);
    m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    EXPECT_EQ(chosen(), u"xterm"_s);
}

TEST_F(TerminalChoice, IdentifiesTheTargetOfALink)
{
    install({u"opt/konsole"_s});
    ASSERT_TRUE(QFile::link(m_programs.path(u"opt/konsole"_s), m_programs.path(u"alternative"_s)));
    ASSERT_TRUE(QFile::link(m_programs.path(u"alternative"_s), m_programs.path(u"x-terminal-emulator"_s)));
    EXPECT_EQ(arguments(), (QStringList{u"--workdir"_s, u"/w/a b"_s, u"-e"_s} + shell));
}

TEST_F(TerminalChoice, IdentifiesALinkByItsOwnNameFirst)
{
    install({u"opt/snap"_s});
    ASSERT_TRUE(QFile::link(m_programs.path(u"opt/snap"_s), m_programs.path(u"alacritty"_s)));
    EXPECT_EQ(chosen(), u"alacritty"_s);
    EXPECT_EQ(arguments().first(), u"--working-directory=/w/a b"_s);
}

TEST_F(TerminalChoice, StartsTheWrappedProgramInsteadOfTheWrapper)
{
    install({u"opt/gnome-terminal.wrapper"_s, u"opt/gnome-terminal"_s});
    ASSERT_TRUE(QFile::link(m_programs.path(u"opt/gnome-terminal.wrapper"_s),
                            m_programs.path(u"x-terminal-emulator"_s)));
    EXPECT_EQ(chosen(), u"gnome-terminal"_s);
    EXPECT_EQ(arguments(), (QStringList{u"--working-directory=/w/a b"_s, u"--"_s} + shell));
}

TEST_F(TerminalChoice, FindsNothingWithoutPath)
{
    m_environment.remove(u"PATH"_s);
    EXPECT_EQ(chosen(), QString());
}

TEST_F(TerminalChoice, RunsTheUsersShell)
{
    const QString own = QString::fromLocal8Bit(getpwuid(getuid())->pw_shell);
    install({u"fish"_s});
    m_environment.insert(u"SHELL"_s, m_programs.path(u"fish"_s));
    EXPECT_EQ(Terminal::userShell(m_environment), m_programs.path(u"fish"_s));
    for (const QString &broken : {u""_s, u"fish"_s, u"/no/such/shell"_s, u"/etc/passwd"_s, u"/tmp"_s}) {
        m_environment.insert(u"SHELL"_s, broken);
        EXPECT_EQ(Terminal::userShell(m_environment), own) << broken.toStdString();
    }
}

struct QuotingCase
{
    QString text;
    QString word;
};

class Quoting : public testing::TestWithParam<QuotingCase>
{};

TEST_P(Quoting, MakesOneWord)
{
    EXPECT_EQ(Terminal::quoted(GetParam().text), GetParam().word);
}

TEST_P(Quoting, IsParsedByTheShell)
{
    QProcess sh;
    sh.start(u"/bin/sh"_s, {u"-c"_s, u"printf %s "_s + Terminal::quoted(GetParam().text)});
    ASSERT_TRUE(sh.waitForFinished());
    EXPECT_EQ(QString::fromUtf8(sh.readAllStandardOutput()), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Texts, Quoting,
                         testing::Values(QuotingCase{u"/Users/ann/my app"_s, u"'/Users/ann/my app'"_s},
                                         QuotingCase{u"/tmp/bob's app"_s, uR"('/tmp/bob'\''s app')"_s},
                                         QuotingCase{u"''"_s, uR"(''\'''\''')"_s},
                                         QuotingCase{u""_s, u"''"_s},
                                         QuotingCase{u"a\"b\\c"_s, u"'a\"b\\c'"_s},
                                         QuotingCase{u"$HOME `id` $(id) !!"_s, u"'$HOME `id` $(id) !!'"_s},
                                         QuotingCase{u"a\nb"_s, u"'a\nb'"_s},
                                         QuotingCase{u"größe 🦊"_s, u"'größe 🦊'"_s},
                                         QuotingCase{u"-x"_s, u"'-x'"_s}));

/// Runs the command that a terminal would run.
class TerminalFolder : public testing::TestWithParam<QString>
{};

TEST_P(TerminalFolder, IsTheWorkingDirectoryOfTheShell)
{
    FakePrograms programs;
    programs.install(u"xterm"_s);
    const QString shellPath = programs.install(u"bob's $hell"_s);
    const QString folder = programs.path(GetParam());
    ASSERT_TRUE(QDir().mkpath(folder));
    const ScopedEnvironment path("PATH", programs.folder().toLocal8Bit());
    const ScopedEnvironment shellVariable("SHELL", shellPath.toLocal8Bit());
    const ScopedEnvironment terminal("TERMINAL", std::nullopt);

    Terminal::open(folder);

    const QStringList command = programs.record(u"xterm"_s).arguments;
    ASSERT_EQ(command.size(), 4);
    ASSERT_EQ(command.first(), u"-e"_s);
    ASSERT_EQ(QProcess::execute(command[1], command.sliced(2)), 0);
    const StartRecord record = programs.record(u"bob's $hell"_s);
    EXPECT_EQ(record.folder, folder);
    EXPECT_EQ(record.arguments, QStringList());
}

INSTANTIATE_TEST_SUITE_P(Names, TerminalFolder,
                         testing::Values(u"plain"_s, u"bob's \"dir\" \\x"_s, u"-dash"_s, u"a\nb"_s, u" "_s,
                                         u"größe 🦊"_s, u"$HOME `id` $(id)"_s, u"--help"_s, u"a;b&c|d"_s,
                                         u"*?[x]"_s, u"~"_s, u"'''"_s, u"%s%20#1"_s, u"trailing\\"_s));

TEST(Terminal, DoesNothingIfNoneIsInstalled)
{
    const FakePrograms programs;
    const ScopedEnvironment path("PATH", programs.folder().toLocal8Bit());
    const ScopedEnvironment terminal("TERMINAL", std::nullopt);
    Terminal::open(u"/tmp"_s);
}

TEST(Terminal, StartsAShellEvenIfTheFolderIsGone)
{
    FakePrograms programs;
    programs.install(u"xterm"_s);
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, programs.folder());
    environment.insert(u"SHELL"_s, programs.install(u"shell"_s));
    const auto command = Terminal::commandFor(programs.path(u"gone"_s), environment);
    ASSERT_TRUE(command);
    QProcess::execute(command->arguments[1], command->arguments.sliced(2));
    EXPECT_EQ(programs.record(u"shell"_s).folder, QDir::currentPath());
}

} // namespace portolan
