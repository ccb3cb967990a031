#include "Screen.h"

#include "Output.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <sys/signalfd.h>
#include <unistd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView enter = "\x1b[?1049h\x1b[?25l"; // the alternate screen, without cursor
constexpr QByteArrayView leave = "\x1b[?25h\x1b[?1049l";

/// Those of a resized terminal, and of having been continued after a stop.
sigset_t watchedSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGWINCH);
    sigaddset(&signals, SIGCONT);
    return signals;
}

FileDescriptor openSignals()
{
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

} // namespace

Screen::Screen()
    : m_keys(STDIN_FILENO, QSocketNotifier::Read)
    , m_signalFd(openSignals())
    , m_signals(m_signalFd.get(), QSocketNotifier::Read)
{
    m_keys.setEnabled(false);
    connect(&m_keys, &QSocketNotifier::activated, this, &Screen::readKeys);
    connect(&m_signals, &QSocketNotifier::activated, this, &Screen::readSignals);
    takeTerminal();
}

Screen::~Screen()
{
    (void)Output::write(leave);
    if (m_modeBefore)
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &*m_modeBefore);
    m_signals.setEnabled(false);
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

bool Screen::show(const QString &text)
{
    if (text == m_shown)
        return true;
    m_shown = text;
    // Each line is erased before it is written: after a line as wide as the terminal the cursor is still on
    // its last character.
    QStringList lines = text.split(u'\n');
    const QString last = lines.takeLast();
    QString output = u"\x1b[H"_s;
    for (const QString &line : std::as_const(lines))
        output += "\x1b[K"_L1 + line + "\r\n"_L1;
    return Output::write((output + "\x1b[J"_L1 + last).toUtf8());
}

void Screen::takeTerminal()
{
    startReadingKeys();
    (void)Output::write(enter);
}

// Keys are read one by one and without echo. Control-Z and Control-\ do nothing: they would leave the shell
// on the alternate screen.
void Screen::startReadingKeys()
{
    termios mode{};
    if (tcgetattr(STDIN_FILENO, &mode) != 0)
        return;
    if (!m_modeBefore)
        m_modeBefore = mode;
    mode.c_lflag &= ~tcflag_t(ICANON | ECHO);
    mode.c_cc[VSUSP] = _POSIX_VDISABLE;
    mode.c_cc[VQUIT] = _POSIX_VDISABLE;
    mode.c_cc[VMIN] = 1;
    mode.c_cc[VTIME] = 0;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &mode);
    m_keys.setEnabled(true);
}

void Screen::readKeys()
{
    std::array<char, 64> keys;
    const ssize_t count = read(STDIN_FILENO, keys.data(), keys.size());
    if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
        m_keys.setEnabled(false);
    for (ssize_t i = 0; i < count; ++i)
        Q_EMIT typed(keys[size_t(i)]);
}

void Screen::readSignals()
{
    bool wasStopped = false;
    signalfd_siginfo signal;
    while (read(m_signalFd.get(), &signal, sizeof signal) == ssize_t(sizeof signal))
        wasStopped |= signal.ssi_signo == SIGCONT;
    if (wasStopped)
        takeTerminal();
    m_shown.clear();
    Q_EMIT redrawNeeded();
}

} // namespace portolan
