// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>
#include <mutex>
#include <optional>

namespace portolan {

/// An offscreen window, drawn by the software renderer, for tests of what items draw.
class TestWindow
{
public:
    static constexpr int width = 120;
    static constexpr int height = 88;

    explicit TestWindow(const QColor &background = Qt::black)
    {
        static std::once_flag chosen;
        std::call_once(chosen, [] { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); });
        m_window.emplace();
        m_window->setColor(background);
        m_window->resize(width, height);
    }

    QQuickItem *root() { return m_window->contentItem(); }
    qreal scale() { return m_window->effectiveDevicePixelRatio(); }

    /// Shows `item` at its implicit size.
    void put(QQuickItem &item, const QPointF &position)
    {
        item.setParentItem(root());
        item.setPosition(position);
        item.setSize({item.implicitWidth(), item.implicitHeight()});
    }

    /// The content of the window in device pixels.
    QImage pixels()
    {
        QImage image = m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }

    /// The content of the window with `image` drawn at `position`, one for each way to round the position to
    /// whole device pixels.
    QList<QImage> expected(const QImage &image, const QPointF &position)
    {
        QList<QImage> contents;
        const QPointF at = position * scale();
        for (const int x : {int(std::floor(at.x())), int(std::ceil(at.x()))}) {
            for (const int y : {int(std::floor(at.y())), int(std::ceil(at.y()))}) {
                QImage content((QSizeF(width, height) * scale()).toSize(), QImage::Format_RGB32);
                content.fill(m_window->color());
                QPainter(&content).drawImage(x, y, image);
                contents << content;
            }
        }
        return contents;
    }

private:
    std::optional<QQuickWindow> m_window;
};

} // namespace portolan
