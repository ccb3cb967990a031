#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <optional>

#include <termios.h>

namespace portolan {

/// The whole terminal, showing one text at a time. The destructor restores the terminal.
class Screen : public QObject
{
    Q_OBJECT

public:
    Screen();
    ~Screen() override;

    /// Whether keys can be read: standard input is a terminal.
    [[nodiscard]] bool readsKeys() const { return m_modeBefore.has_value(); }

    /// Shows `text`: lines separated by line feeds, no more and no wider than the terminal. Writes nothing
    /// when that is shown already. False when the terminal takes no more output.
    [[nodiscard]] bool show(const QString &text);

Q_SIGNALS:
    /// The text has to be shown again: the terminal has been resized, or another program has used it.
    void redrawNeeded();
    /// The user typed a character.
    void typed(char character);

private:
    void takeTerminal();
    void startReadingKeys();
    void readKeys();
    void readSignals();

    std::optional<termios> m_modeBefore; // absent where standard input is no terminal
    QSocketNotifier m_keys;
    FileDescriptor m_signalFd;
    QSocketNotifier m_signals;
    QString m_shown;
};

} // namespace portolan
