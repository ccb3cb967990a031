// SPDX-License-Identifier: MIT
#include "Screen.h"

#include "Output.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <csignal>
#include <cstdio>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#define NCURSES_NOMACROS
#define NCURSES_WIDECHAR 1
#include <curses.h>

namespace portolan {

namespace {

/// The signals of a resized terminal, of Control-Z, and of being continued after a stop.
sigset_t watchedSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGWINCH, SIGTSTP, SIGCONT})
        sigaddset(&signals, signal);
    return signals;
}

FileDescriptor openSignals()
{
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

struct Key
{
    bool isNamed; // whether `code` is a key code of ncurses; otherwise it is a character
    int code;
    Input::Kind kind;
};

constexpr std::array keys{
    Key{true, KEY_UP, Input::Up},         Key{true, KEY_DOWN, Input::Down},
    Key{true, KEY_PPAGE, Input::PageUp},  Key{true, KEY_NPAGE, Input::PageDown},
    Key{true, KEY_HOME, Input::Home},     Key{true, KEY_FIND, Input::Home},
    Key{true, KEY_END, Input::End},       Key{true, KEY_SELECT, Input::End},
    Key{true, KEY_ENTER, Input::Enter},   Key{true, KEY_BACKSPACE, Input::Backspace},
    Key{true, KEY_DC, Input::Backspace},  Key{false, '\r', Input::Enter},
    Key{false, '\n', Input::Enter},       Key{false, '\x1b', Input::Escape},
    Key{false, '\x7f', Input::Backspace}, Key{false, '\b', Input::Backspace},
};

std::optional<Input> mouseInput()
{
    MEVENT event;
    if (getmouse(&event) != OK)
        return std::nullopt;
    if (event.bstate & BUTTON4_PRESSED)
        return Input{.kind = Input::WheelUp};
    if (event.bstate & BUTTON5_PRESSED)
        return Input{.kind = Input::WheelDown};
    return Input{.kind = Input::Click, .row = event.y};
}

std::optional<Input> inputOf(bool isNamed, wint_t code)
{
    if (isNamed && code == KEY_MOUSE)
        return mouseInput();
    const auto key = std::ranges::find_if(
        keys, [&](const Key &one) { return one.isNamed == isNamed && one.code == int(code); });
    if (key != keys.end())
        return Input{.kind = key->kind};
    return isNamed ? std::nullopt : std::optional(Input{.character = char32_t(code)});
}

// The numbers of ncurses' colour pairs are the values of TextStyle.
void makeColors()
{
    start_color();
    use_default_colors();
    for (const TerminalColor &color : terminalColors)
        init_pair(short(color.style), COLORS >= 256 ? color.ofPalette : color.basic, -1);
}

void setAttributes(TextStyle style, attr_t others)
{
    const attr_t own = style == TextStyle::Strong ? A_BOLD : style == TextStyle::Faint ? A_DIM : A_NORMAL;
    const bool isColored =
        std::ranges::find(terminalColors, style, &TerminalColor::style) != terminalColors.end();
    attr_set(own | others, isColored ? short(style) : short(0), nullptr);
}

} // namespace

Screen::Screen()
    : m_depth(Output::colors().depth())
    , m_keys(STDIN_FILENO, QSocketNotifier::Read)
    , m_signalFd(openSignals())
    , m_signals(m_signalFd.get(), QSocketNotifier::Read)
{
    m_keys.setEnabled(false);
    connect(&m_keys, &QSocketNotifier::activated, this, &Screen::readKeys);
    connect(&m_signals, &QSocketNotifier::activated, this, &Screen::readSignals);
    termios mode{};
    if (tcgetattr(STDOUT_FILENO, &mode) == 0)
        m_modeBefore = mode;
    // A terminal type that is missing in the terminfo database is usually a newer one, and these are
    // compatible with xterm.
    m_screen = newterm(nullptr, stdout, stdin);
    if (!m_screen)
        m_screen = newterm("xterm", stdout, stdin);
    if (m_screen)
        open();
}

Screen::~Screen()
{
    if (m_screen) {
        leave();
        delscreen(m_screen);
    }
    m_signals.setEnabled(false);
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

void Screen::open()
{
    // ncurses encodes its output by the locale.
    if (MB_CUR_MAX == 1)
        std::setlocale(LC_CTYPE, "C.UTF-8");
    cbreak();
    noecho();
    nonl();
    curs_set(0);
    if (m_depth != TerminalColors::Depth::None && has_colors())
        makeColors();
    // Control-\ would end the program without restoring the terminal.
    termios mode{};
    if (tcgetattr(STDOUT_FILENO, &mode) == 0) {
        mode.c_cc[VQUIT] = _POSIX_VDISABLE;
        tcsetattr(STDOUT_FILENO, TCSANOW, &mode);
        def_prog_mode();
    }
    if (isatty(STDIN_FILENO) != 1)
        return;
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    set_escdelay(25);
    mousemask(BUTTON1_PRESSED | BUTTON4_PRESSED | BUTTON5_PRESSED, nullptr);
    mouseinterval(0);
    m_keys.setEnabled(true);
}

// If the terminal takes no output, only its mode is restored.
void Screen::leave()
{
    if (!isendwin() && Output::awaitWritable())
        endwin();
    if (m_modeBefore)
        tcsetattr(STDOUT_FILENO, TCSANOW, &*m_modeBefore);
}

bool Screen::show(const QList<StyledLine> &lines, std::optional<qsizetype> highlighted)
{
    if (!Output::awaitWritable())
        return false;
    erase();
    for (qsizetype row = 0; row < std::min<qsizetype>(lines.size(), LINES); ++row) {
        const attr_t reverse = row == highlighted ? A_REVERSE : A_NORMAL;
        move(int(row), 0);
        for (const StyledText &piece : lines[row]) {
            // Colours in reverse video would become coloured backgrounds.
            const bool isPlain =
                m_depth == TerminalColors::Depth::None || (reverse && piece.style != TextStyle::Strong);
            setAttributes(isPlain ? TextStyle::Plain : piece.style, reverse);
            const std::wstring text = piece.text.toStdWString();
            addnwstr(text.data(), int(text.size()));
        }
        if (reverse && getcury(stdscr) == row)
            chgat(-1, reverse, 0, nullptr);
    }
    attr_set(A_NORMAL, 0, nullptr);
    refresh();
    return true;
}

bool Screen::copy(const QString &text)
{
    // The Linux console prints the sequence instead of ignoring it.
    if (qgetenv("TERM").startsWith("linux"))
        return false;
    return Output::write("\x1b]52;c;" + text.toUtf8().toBase64() + '\a');
}

void Screen::readKeys()
{
    wint_t code = 0;
    for (int result = get_wch(&code); result != ERR; result = get_wch(&code)) {
        if (const auto input = inputOf(result == KEY_CODE_YES, code))
            Q_EMIT entered(*input);
    }
    pollfd terminal{.fd = STDIN_FILENO, .events = POLLIN};
    if (poll(&terminal, 1, 0) > 0 && terminal.revents & (POLLHUP | POLLERR | POLLNVAL)) {
        m_keys.setEnabled(false);
        Q_EMIT lost();
    }
}

void Screen::readSignals()
{
    signalfd_siginfo signal;
    while (read(m_signalFd.get(), &signal, sizeof signal) == ssize_t(sizeof signal)) {
        if (signal.ssi_signo == SIGWINCH)
            continue;
        // After a stop the terminal may be in another state; refresh() sets it up again.
        leave();
        if (signal.ssi_signo == SIGTSTP)
            raise(SIGSTOP);
    }
    const Output::Size size = Output::size();
    resizeterm(size.rows, size.columns);
    Q_EMIT redrawNeeded();
}

} // namespace portolan
