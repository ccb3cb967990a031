#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <optional>

#include <termios.h>

/// The whole terminal as a picture that is replaced at will. The terminal is as it was before once this is
/// gone.
class Screen : public QObject
{
    Q_OBJECT

public:
    Screen();
    ~Screen() override;

    /// Shows `picture`: lines separated by line feeds, no more and no wider than the terminal. Writes nothing
    /// when that is shown already. False when the terminal takes no more output.
    [[nodiscard]] bool show(const QString &picture);

Q_SIGNALS:
    /// The terminal has another size and no picture.
    void resized();
    /// The user typed a character.
    void typed(char character);

private:
    void startReadingKeys();
    void readKeys();
    void readResizes();

    std::optional<termios> m_modeBefore; // absent where standard input is no terminal
    QSocketNotifier m_keys;
    FileDescriptor m_resizeFd;
    QSocketNotifier m_resizes;
    QString m_shown;
};
