// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// The fonts of the interface. `size` and `tracking`, the extra letter spacing, are in device-independent
/// pixels. Main thread.
///
/// A whole size is set as the font's `pixelSize`. A fractional one can only be set as `pointSizeF`, and Qt
/// draws it rounded to whole pixels; ScaledText corrects that.
class Fonts : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The desktop's general font.
    Q_INVOKABLE [[nodiscard]] static QFont system(qreal size, int weight = QFont::Normal, qreal tracking = 0);
    /// The desktop's fixed-width font.
    Q_INVOKABLE [[nodiscard]] static QFont monospaced(qreal size, int weight = QFont::Normal);
    /// The general font with tabular digits, so that a changing number does not move. Before Qt 6.7 the
    /// font's default digits, which are tabular in most desktop fonts.
    Q_INVOKABLE [[nodiscard]] static QFont digits(qreal size, int weight = QFont::Normal);

    /// `font` with its size rounded to whole pixels.
    Q_INVOKABLE [[nodiscard]] static QFont whole(const QFont &font);
    /// The scale factor from whole(font) to the size of `font`: 1, or for instance 11.5/12.
    Q_INVOKABLE [[nodiscard]] static qreal ratio(const QFont &font);
};

} // namespace portolan
