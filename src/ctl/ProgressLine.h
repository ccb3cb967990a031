// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTimer>

namespace portolan {

/// One line on the terminal that says what a command is waiting for. It appears only when the wait is long
/// enough to be noticed, and is erased at the end. Where standard output cannot erase it, it never appears.
class ProgressLine
{
public:
    ProgressLine();
    ~ProgressLine();
    Q_DISABLE_COPY_MOVE(ProgressLine)

    void setText(const QString &text);

private:
    void draw();

    QString m_text;
    bool m_isDrawn = false;
    QTimer m_delay;
};

} // namespace portolan
