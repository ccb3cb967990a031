// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTimer>

namespace portolan {

/// One line on the terminal that says what a command is waiting for. It appears only after a noticeable wait,
/// and is erased at the end. It never appears where standard output cannot erase it.
class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();
    Q_DISABLE_COPY_MOVE(ProgressLine)

    void setText(const QString &text);
    /// Erases it, so that something else can be printed; it is drawn again with the next text.
    void erase();

private:
    void draw();

    QString m_text;
    bool m_isDrawn = false;
    QTimer m_delay;
};

} // namespace portolan
