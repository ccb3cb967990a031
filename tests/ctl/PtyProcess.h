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

/// A program that runs on a terminal of its own. Ended, if need be killed, with this object.
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

    /// What the program wrote so far.
    [[nodiscard]] QByteArray output() const { return m_output; }
    /// Reads on until `condition` holds; false if it does not within half a minute.
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
    /// How the terminal treats input and output.
    [[nodiscard]] termios mode() const;
    /// Makes the terminal go away, as the window of one does that is closed.
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
