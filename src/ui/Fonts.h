#pragma once

#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

/// The fonts of the interface, by size in device-independent pixels: sizes may be fractional, as
/// `font.pixelSize` cannot. `tracking` is added between letters, in the same pixels. Main thread.
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
    /// The general font with figures of one width, so that a number changes without moving.
    Q_INVOKABLE [[nodiscard]] static QFont digits(qreal size, int weight = QFont::Normal, qreal tracking = 0);
};
