// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace portolan::Terminal {

/// The command that opens a terminal window.
struct Invocation
{
    QString program; ///< absolute path
    QStringList arguments;
};

/// `text` quoted as one word for the shell: in single quotes, with every ' in it replaced by '\''.
[[nodiscard]] QString quoted(const QString &text);

/// The absolute path of the user's shell: $SHELL, else the one in the password database, else /bin/sh.
[[nodiscard]] QString userShell(const QProcessEnvironment &environment);

/// The command that opens a terminal in `folder` for the given environment: with the emulator in $TERMINAL,
/// else the desktop's own, else the first known one on $PATH. Empty if none is found.
[[nodiscard]] std::optional<Invocation> commandFor(const QString &folder,
                                                   const QProcessEnvironment &environment);

} // namespace portolan::Terminal
