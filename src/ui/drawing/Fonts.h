#pragma once

#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// The fonts of the interface, by size in device-independent pixels. `tracking` is added between letters, in
/// the same pixels. Main thread.
///
/// Whole sizes are a font's `pixelSize`. Fractional ones can only be told as its `pointSizeF`, and Qt draws
/// them rounded to whole pixels all the same; ScaledText makes up the difference.
class Fonts : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The desktop's general font.
    Q_INVOKABLE [[nodiscard]] static QFont system(qreal size, int weight = QFont::Normal, qreal tracking = 0);
    /// The desktop's fixed-width font.
    Q_INVOKABLE [[nodiscard]] static QFont monospaced(qreal size, int weight = QFont::Normal,
                                                      qreal tracking = 0);
    /// The general font with figures of one width, so that a number changes without moving. Before Qt 6.7 the
    /// font's own figures, which most desktop fonts draw at one width.
    Q_INVOKABLE [[nodiscard]] static QFont digits(qreal size, int weight = QFont::Normal, qreal tracking = 0);

    /// `font` at the whole size in pixels at which it can be drawn.
    Q_INVOKABLE [[nodiscard]] static QFont whole(const QFont &font);
    /// What `whole(font)` is to be scaled by to have the size of `font`: 1, or for instance 11.5/12.
    Q_INVOKABLE [[nodiscard]] static qreal ratio(const QFont &font);
};

} // namespace portolan
