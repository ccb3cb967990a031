// SPDX-License-Identifier: MIT
#include "XEmbedIconWindow.h"

#include "XcbDisplay.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {
constexpr QSize smallestSize(22, 22); // for trays that let the icon choose its size
constexpr QPoint offScreen(-100, -100);
} // namespace

XEmbedIconWindow::XEmbedIconWindow(const QList<QImage> &images, bool hasAlpha)
    : m_images(images)
    , m_hasAlpha(hasAlpha)
{
    QSurfaceFormat surface = format();
    surface.setAlphaBufferSize(hasAlpha ? 8 : 0);
    setFormat(surface);
    setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    setTitle(u"Portolan"_s);
    setGeometry(QRect(offScreen, smallestSize));
    create();
    setMinimumSize(smallestSize); // after create(), so that the tray can read the hint before show()
}

const QImage &XEmbedIconWindow::imageFor(int side) const
{
    const auto fitting =
        std::ranges::find_if(m_images, [side](const QImage &image) { return image.width() >= side; });
    return fitting != m_images.end() ? *fitting : m_images.last();
}

void XEmbedIconWindow::paintEvent(QPaintEvent *)
{
    const QRect whole(QPoint(), size());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (m_hasAlpha)
        painter.fillRect(whole, Qt::transparent);
    else
        painter.drawImage(whole, XcbDisplay().backgroundOf(xcb_window_t(winId())));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);

    const int side = std::min(width(), height());
    QRect square(0, 0, side, side);
    square.moveCenter(whole.center());
    painter.drawImage(square, imageFor(qRound(side * devicePixelRatio())));
}

void XEmbedIconWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (!QRectF(QPointF(), QSizeF(size())).contains(event->position()))
        return;
    if (event->button() == Qt::RightButton)
        Q_EMIT rightClicked();
    else
        Q_EMIT clicked();
}

} // namespace portolan
