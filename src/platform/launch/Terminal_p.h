#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace portolan {

namespace Terminal {

/// What is started to open a window.
struct Invocation
{
    QString program; ///< absolute path
    QStringList arguments;
};

/// `text` as one word of the shell, whatever it contains: in single quotes, each ' of its own as '\''.
[[nodiscard]] QString quoted(const QString &text);

/// The absolute path of the shell of the user: $SHELL, else the password database's, else /bin/sh.
[[nodiscard]] QString userShell(const QProcessEnvironment &environment);

/// How to open a terminal in `folder` in a session with this environment: the emulator that the user named,
/// else the desktop's own, else the first one found on its $PATH. Absent when there is none.
[[nodiscard]] std::optional<Invocation> commandFor(const QString &folder,
                                                   const QProcessEnvironment &environment);

} // namespace Terminal

} // namespace portolan
