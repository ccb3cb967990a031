// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

#include <sys/types.h>
#include <termios.h>

namespace portolan {

/// A program on a pseudo-terminal. Ended, if necessary killed, with this object.
class PtyProcess
{
public:
    struct Options
    {
        int columns = 120;
        int rows = 30;
        QList<std::pair<QByteArray, QByteArray>> environment; ///< added to this program's own
    };

    PtyProcess(const QString &program, const QStringList &arguments, const Options &options);
    ~PtyProcess();
    PtyProcess(const PtyProcess &) = delete;
    PtyProcess &operator=(const PtyProcess &) = delete;

    /// The output of the program so far.
    [[nodiscard]] QByteArray output() const { return m_output; }
    /// Reads until `condition` is true; returns false if it is not within 30 seconds.
    [[nodiscard]] bool readUntil(const std::function<bool()> &condition);
    /// Reads to the program's end and returns its exit status; nothing if it was killed or does not end.
    [[nodiscard]] std::optional<int> exitStatus();
    /// Reads to the program's end and returns the signal that killed it; nothing if none did.
    [[nodiscard]] std::optional<int> endSignal();

    void type(QByteArrayView keys) const;
    void resize(int columns, int rows) const;
    void sendSignal(int signal) const;
    /// Waits until a signal has stopped the program.
    [[nodiscard]] bool awaitStop() const;
    /// The mode of the terminal.
    [[nodiscard]] termios mode() const;
    /// Closes the terminal, like the window of a terminal emulator.
    void closeTerminal();
    void setMode(const termios &mode) const;

private:
    bool readSome();
    std::optional<int> waitForEnd();

    pid_t m_pid = -1;
    int m_terminal = -1;
    QByteArray m_output;
};

} // namespace portolan
