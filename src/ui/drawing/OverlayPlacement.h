#pragma once

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QtQmlIntegration>

namespace portolan {

/// Where menus and hints go: near what they belong to, and inside what has to hold them.
class OverlayPlacement : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The top left corner of a menu of `size` that belongs to `anchor` (a control, or the empty rectangle at
    /// the pointer): below and along its left side, above or along its right side where there is no room,
    /// and in any case inside `bounds`.
    Q_INVOKABLE [[nodiscard]] static QPointF menu(const QRectF &anchor, const QSizeF &size,
                                                  const QRectF &bounds);

    /// The top left corner of a tool tip of `size` to the control `target`: centred below it, above where
    /// there is no room, and inside `bounds`.
    Q_INVOKABLE [[nodiscard]] static QPointF toolTip(const QRectF &target, const QSizeF &size,
                                                     const QRectF &bounds);
};

} // namespace portolan
