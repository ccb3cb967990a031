// SPDX-License-Identifier: MIT
#include "PtyProcess.h"

#include <QDeadlineTimer>
#include <QFile>

#include <array>
#include <csignal>
#include <cstdlib>
#include <utility>
#include <vector>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

PtyProcess::PtyProcess(const QString &program, const QStringList &arguments, const Options &options)
{
    QList<QByteArray> words{QFile::encodeName(program)};
    for (const QString &argument : arguments)
        words.append(argument.toUtf8());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    const winsize size{.ws_row = ushort(options.rows), .ws_col = ushort(options.columns)};
    m_pid = forkpty(&m_terminal, nullptr, nullptr, &size);
    if (m_pid != 0)
        return;
    for (const int number :
         {SIGINT, SIGQUIT, SIGHUP}) // ignored where a shell runs the tests in the background
        signal(number, SIG_DFL);
    for (const auto &[name, value] : options.environment)
        setenv(name.constData(), value.constData(), 1);
    execv(argv[0], argv.data());
    _exit(127);
}

PtyProcess::~PtyProcess()
{
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    if (m_terminal >= 0)
        close(m_terminal);
}

bool PtyProcess::readUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer limit(30'000);
    while (!condition()) {
        if (limit.hasExpired() || !readSome())
            return condition();
    }
    return true;
}

std::optional<int> PtyProcess::exitStatus()
{
    const auto status = waitForEnd();
    return status && WIFEXITED(*status) ? std::optional(WEXITSTATUS(*status)) : std::nullopt;
}

std::optional<int> PtyProcess::endSignal()
{
    const auto status = waitForEnd();
    return status && WIFSIGNALED(*status) ? std::optional(WTERMSIG(*status)) : std::nullopt;
}

std::optional<int> PtyProcess::waitForEnd()
{
    const QDeadlineTimer limit(30'000);
    while (readSome() && !limit.hasExpired()) {
    }
    int status = 0;
    pid_t ended = 0;
    while ((ended = waitpid(m_pid, &status, WNOHANG)) == 0 && !limit.hasExpired())
        usleep(1000);
    if (ended != m_pid)
        return std::nullopt;
    m_pid = -1;
    return status;
}

void PtyProcess::type(QByteArrayView keys) const
{
    [[maybe_unused]] const auto written = write(m_terminal, keys.data(), size_t(keys.size()));
}

void PtyProcess::resize(int columns, int rows) const
{
    const winsize size{.ws_row = ushort(rows), .ws_col = ushort(columns)};
    ioctl(m_terminal, TIOCSWINSZ, &size);
}

void PtyProcess::sendSignal(int signal) const
{
    kill(m_pid, signal);
}

bool PtyProcess::awaitStop() const
{
    int status = 0;
    return waitpid(m_pid, &status, WUNTRACED) == m_pid && WIFSTOPPED(status);
}

termios PtyProcess::mode() const
{
    termios mode{};
    tcgetattr(m_terminal, &mode);
    return mode;
}

void PtyProcess::setMode(const termios &mode) const
{
    tcsetattr(m_terminal, TCSANOW, &mode);
}

void PtyProcess::closeTerminal()
{
    close(std::exchange(m_terminal, -1));
}

// False once the program has closed the terminal.
bool PtyProcess::readSome()
{
    if (m_terminal < 0)
        return false;
    pollfd terminal{.fd = m_terminal, .events = POLLIN};
    if (poll(&terminal, 1, 20) <= 0)
        return true;
    std::array<char, 4096> bytes;
    const ssize_t count = read(m_terminal, bytes.data(), bytes.size());
    if (count <= 0)
        return false;
    m_output.append(bytes.data(), count);
    return true;
}

} // namespace portolan
