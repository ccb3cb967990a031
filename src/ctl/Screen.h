// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"
#include "TerminalColors.h"

#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <optional>

#include <termios.h>

struct screen; // ncurses' own

namespace portolan {

/// A key press or mouse action in the live view.
struct Input
{
    enum Kind : quint8 {
        Text, ///< a character
        Enter,
        Escape,
        Backspace,
        Up,
        Down,
        PageUp,
        PageDown,
        Home,
        End,
        Click,
        WheelUp,
        WheelDown,
    };

    Kind kind = Text;
    char32_t character = 0; ///< of a Text
    int row = 0;            ///< of a Click, from 0 on
};

/// The terminal in full-screen mode, by ncurses. One object at a time; main thread. The destructor restores
/// the terminal.
class Screen : public QObject
{
    Q_OBJECT

public:
    Screen();
    ~Screen() override;

    /// Whether ncurses can use the terminal; if not, no other function may be called.
    [[nodiscard]] bool isOpen() const { return m_screen; }
    /// Whether keys can be read: standard input is a terminal.
    [[nodiscard]] bool readsKeys() const { return m_keys.isEnabled(); }

    /// Shows `lines`, the line `highlighted` as the selected one. False if the terminal takes no more output.
    [[nodiscard]] bool show(const QList<StyledLine> &lines, std::optional<qsizetype> highlighted);

    /// Asks the terminal to put `text` on the clipboard of the machine that it runs on (OSC 52). False if the
    /// terminal is known not to; whether others do it is unknown.
    bool copy(const QString &text);

Q_SIGNALS:
    /// The lines must be shown again: the terminal was resized, or another program has used it.
    void redrawNeeded();
    void entered(const portolan::Input &input);
    /// The terminal was closed.
    void lost();

private:
    void open();
    void leave();
    void readKeys();
    void readSignals();

    std::optional<termios> m_modeBefore;
    screen *m_screen = nullptr;
    TerminalColors::Depth m_depth;
    QSocketNotifier m_keys;
    FileDescriptor m_signalFd;
    QSocketNotifier m_signals;
};

} // namespace portolan
