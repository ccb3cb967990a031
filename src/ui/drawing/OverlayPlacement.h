// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QtQmlIntegration>

namespace portolan {

/// Computes the positions of menus and tool tips, which are items inside the window. Pure functions.
class OverlayPlacement : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The top left corner of a menu of `size` for `anchor`, a control or an empty rectangle at the pointer:
    /// below it and aligned to its left side, or above or aligned to its right side if there is not enough
    /// space. Always inside `bounds`.
    Q_INVOKABLE [[nodiscard]] static QPointF menu(const QRectF &anchor, const QSizeF &size,
                                                  const QRectF &bounds);

    /// The top left corner of a tool tip of `size` for the control `target`: centred below it, or above it if
    /// there is not enough space. Always inside `bounds`.
    Q_INVOKABLE [[nodiscard]] static QPointF toolTip(const QRectF &target, const QSizeF &size,
                                                     const QRectF &bounds);
};

} // namespace portolan
