// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace portolan {

/// Sanitizes text from processes and files for display on one line of plain text, so that no content can
/// break the line, reorder or overlap neighbouring text, or make the layout slow.
class DisplayText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The maximum length in UTF-16 units, which is more than a line of a panel can show.
    static constexpr qsizetype maxLength = 512;

    /// `text` with U+FFFD for every control, invisible or directional character and every lone surrogate, at
    /// most four combining marks in a row, and an ellipsis in place of everything beyond `maxLength`.
    Q_INVOKABLE [[nodiscard]] static QString line(const QString &text);
    /// As line(), but a long text is shortened in the middle.
    Q_INVOKABLE [[nodiscard]] static QString path(const QString &text);
    /// line() in a directional isolate, for use inside a sentence.
    Q_INVOKABLE [[nodiscard]] static QString isolated(const QString &text);
};

} // namespace portolan
