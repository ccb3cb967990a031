#pragma once

#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>
#include <mutex>
#include <optional>

namespace portolan {

/// A window of the software renderer, in which items are put at places of their own and looked at.
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

    void put(QQuickItem &item, const QPointF &position)
    {
        item.setParentItem(root());
        item.setPosition(position);
        item.setSize({item.implicitWidth(), item.implicitHeight()});
    }

    /// What the window shows, in its pixels.
    QImage pixels()
    {
        QImage image = m_window->grabWindow().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }

    /// What the window would show if `figure` were copied to each of the pixel positions that `position` can
    /// be rounded to.
    QList<QImage> expected(const QImage &figure, const QPointF &position)
    {
        QList<QImage> images;
        const QPointF at = position * scale();
        for (const int x : {int(std::floor(at.x())), int(std::ceil(at.x()))}) {
            for (const int y : {int(std::floor(at.y())), int(std::ceil(at.y()))}) {
                QImage image((QSizeF(width, height) * scale()).toSize(), QImage::Format_RGB32);
                image.fill(m_window->color());
                QPainter(&image).drawImage(x, y, figure);
                images << image;
            }
        }
        return images;
    }

private:
    std::optional<QQuickWindow> m_window;
};

} // namespace portolan
