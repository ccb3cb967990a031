#pragma once

#include "Ink.h"

#include <QString>
#include <QTimer>

namespace portolan {

/// One line on the terminal that says what is being waited for. It appears only when the wait is long enough
/// to be noticed, and leaves no trace.
class ProgressLine
{
public:
    /// A line that never appears where standard output is no terminal that can erase it.
    ProgressLine();
    ~ProgressLine() { clear(); }
    Q_DISABLE_COPY_MOVE(ProgressLine)

    void setText(const QString &text);
    void clear();

private:
    void draw();

    Ink m_ink;
    QString m_text;
    bool m_isDrawn = false;
    QTimer m_delay;
};

} // namespace portolan
