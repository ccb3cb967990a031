#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace portolan {

/// Text from processes and files made fit to be shown on one line of plain text: whatever it holds, it cannot
/// break the line, reorder its neighbours, tower over them or cost a long layout.
class DisplayText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The most UTF-16 units that are kept; no line of a panel shows as many.
    static constexpr qsizetype longest = 512;

    /// `text` with a visible mark (U+FFFD) for every control, invisible or direction character and every lone
    /// surrogate, at most four combining marks in a row, and an ellipsis for what lies beyond `longest`.
    Q_INVOKABLE [[nodiscard]] static QString line(const QString &text);
    /// As line(), but of a long text both ends are kept and the ellipsis stands in the middle.
    Q_INVOKABLE [[nodiscard]] static QString path(const QString &text);
    /// line() enclosed in a directional isolate, to be put into a sentence.
    Q_INVOKABLE [[nodiscard]] static QString isolated(const QString &text);
};

} // namespace portolan
