// SPDX-License-Identifier: MIT
#include "Terminal.h"

#include "DetachedProgram.h"
#include "Terminal_p.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>

#include <pwd.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// The command line options of one terminal emulator.
struct Emulator
{
    QLatin1StringView name;
    QLatin1StringView first;   ///< the first argument, if any
    QLatin1StringView folder;  ///< the option before the folder, in one argument with it if it ends in "="
    QLatin1StringView command; ///< the option before the command to run, if any
    QLatin1StringView desktop; ///< the desktop whose own terminal it is, if any
};

constexpr Emulator emulators[] = {
    {"gnome-terminal"_L1, ""_L1, "--working-directory="_L1, "--"_L1, "GNOME"_L1},
    {"mate-terminal"_L1, ""_L1, "--working-directory="_L1, "-x"_L1, "MATE"_L1},
    {"xfce4-terminal"_L1, ""_L1, "--working-directory="_L1, "-x"_L1, "XFCE"_L1},
    {"lxterminal"_L1, ""_L1, "--working-directory="_L1, "-e"_L1, ""_L1},
    {"terminator"_L1, ""_L1, "--working-directory="_L1, "-x"_L1, ""_L1},
    {"kgx"_L1, ""_L1, "--working-directory="_L1, "--"_L1, "GNOME"_L1},
    {"alacritty"_L1, ""_L1, "--working-directory="_L1, "-e"_L1, ""_L1},
    {"ghostty"_L1, ""_L1, "--working-directory="_L1, "-e"_L1, ""_L1},
    {"ptyxis"_L1, "--new-window"_L1, "--working-directory="_L1, "--"_L1, "GNOME"_L1},
    {"konsole"_L1, ""_L1, "--workdir"_L1, "-e"_L1, "KDE"_L1},
    {"qterminal"_L1, ""_L1, "--workdir"_L1, "-e"_L1, "LXQt"_L1},
    {"kitty"_L1, ""_L1, "--directory"_L1, ""_L1, ""_L1},
    {"foot"_L1, ""_L1, "--working-directory="_L1, ""_L1, ""_L1},
    {"wezterm"_L1, "start"_L1, "--cwd"_L1, "--"_L1, ""_L1},
    {"xterm"_L1, ""_L1, ""_L1, "-e"_L1, ""_L1},
    {"st"_L1, ""_L1, ""_L1, "-e"_L1, ""_L1},
    {"urxvt"_L1, ""_L1, ""_L1, "-e"_L1, ""_L1},
    {"xdg-terminal-exec"_L1, ""_L1, ""_L1, ""_L1, ""_L1},
};

/// For an unknown emulator: only -e, which every replacement of xterm supports.
constexpr Emulator unknownEmulator{""_L1, ""_L1, ""_L1, "-e"_L1, ""_L1};

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isAbsolute() && file.isFile() && file.isExecutable();
}

/// The names of the emulators to look for, in order of preference.
QStringList candidates(const QProcessEnvironment &environment)
{
    QStringList names{u"xdg-terminal-exec"_s};
    if (const QString named = environment.value(u"TERMINAL"_s); !named.isEmpty())
        names.append(named);
    for (const QString &desktop :
         environment.value(u"XDG_CURRENT_DESKTOP"_s).split(u':', Qt::SkipEmptyParts)) {
        for (const Emulator &emulator : emulators) {
            if (emulator.desktop == desktop)
                names.append(emulator.name);
        }
    }
    names.append(u"x-terminal-emulator"_s);
    for (const Emulator &emulator : emulators)
        names.append(emulator.name);
    return names;
}

QString firstFound(const QStringList &names, const QProcessEnvironment &environment)
{
    const QStringList folders = environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    for (const QString &name : names) {
        if (isExecutableFile(name))
            return name;
        // findExecutable() would search this process's own $PATH if the list of folders were empty.
        QString path = folders.isEmpty() ? QString() : QStandardPaths::findExecutable(name, folders);
        if (!path.isEmpty())
            return path;
    }
    return {};
}

const Emulator *emulatorNamed(const QString &name)
{
    const auto *found = std::ranges::find(emulators, name, &Emulator::name);
    return found == std::end(emulators) ? nullptr : found;
}

struct Found
{
    QString program;
    Emulator emulator;
};

/// Identifies the emulator at `path`, following symbolic links. Debian's *.wrapper scripts only translate
/// xterm's options, so the program that they wrap is used instead.
Found identified(const QString &path)
{
    if (const Emulator *emulator = emulatorNamed(QFileInfo(path).fileName()))
        return {path, *emulator};
    QString resolved = QFileInfo(path).canonicalFilePath();
    if (resolved.endsWith(".wrapper"_L1))
        resolved.chop(".wrapper"_L1.size());
    const Emulator *emulator = emulatorNamed(QFileInfo(resolved).fileName());
    if (emulator && isExecutableFile(resolved))
        return {resolved, *emulator};
    return {path, unknownEmulator};
}

QStringList folderOption(const Emulator &emulator, const QString &folder)
{
    if (emulator.folder.isEmpty())
        return {};
    if (emulator.folder.endsWith('='_L1))
        return {emulator.folder + folder};
    return {emulator.folder, folder};
}

} // namespace

QString Terminal::quoted(const QString &text)
{
    QString inside = text;
    return u'\'' + inside.replace(u'\'', uR"('\'')"_s) + u'\'';
}

QString Terminal::userShell(const QProcessEnvironment &environment)
{
    if (QString shell = environment.value(u"SHELL"_s); isExecutableFile(shell))
        return shell;
    if (const passwd *user = getpwuid(getuid())) {
        if (QString shell = QString::fromLocal8Bit(user->pw_shell); isExecutableFile(shell))
            return shell;
    }
    return u"/bin/sh"_s;
}

std::optional<Terminal::Invocation> Terminal::commandFor(const QString &folder,
                                                         const QProcessEnvironment &environment)
{
    const QString path = firstFound(candidates(environment), environment);
    if (path.isEmpty())
        return std::nullopt;

    const auto [program, emulator] = identified(path);
    QStringList arguments;
    if (!emulator.first.isEmpty())
        arguments.append(emulator.first);
    arguments.append(folderOption(emulator, folder));
    if (!emulator.command.isEmpty())
        arguments.append(emulator.command);
    // The shell changes into the folder as well, because not every emulator has an option for it and some
    // ignore it when they are already running. If the folder is gone, the user gets an error message and a
    // shell; if it is on a dead mount, only the shell hangs.
    const QString script = u"cd "_s + quoted(folder) + u"; exec "_s + quoted(userShell(environment));
    arguments.append({u"/bin/sh"_s, u"-c"_s, script});
    return Invocation{program, arguments};
}

void Terminal::open(const QString &folder)
{
    if (const auto command = commandFor(folder, QProcessEnvironment::systemEnvironment()))
        DetachedProgram::start(command->program, command->arguments);
}

} // namespace portolan
