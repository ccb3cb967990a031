#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <optional>

#include <termios.h>

namespace portolan {

/// The whole terminal as a picture that is replaced at will. The terminal is as it was before once this is
/// gone.
class Screen : public QObject
{
    Q_OBJECT

public:
    Screen();
    ~Screen() override;

    /// Whether there are keys to read: standard input is a terminal.
    [[nodiscard]] bool readsKeys() const { return m_modeBefore.has_value(); }

    /// Shows `picture`: lines separated by line feeds, no more and no wider than the terminal. Writes nothing
    /// when that is shown already. False when the terminal takes no more output.
    [[nodiscard]] bool show(const QString &picture);

Q_SIGNALS:
    /// The terminal has no picture any more: it has another size, or was somebody else's for a while.
    void lostPicture();
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
