// SPDX-License-Identifier: MIT
#include "XEmbedMenu.h"

#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPalette>
#include <QScreen>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {
constexpr int border = 4;   // around all entries
constexpr int padding = 14; // on both sides of a label
constexpr int lineSpace = 10;
} // namespace

XEmbedMenu::XEmbedMenu(const QStringList &labels)
    : m_labels(labels)
    , m_entryHeight(QFontMetrics(QGuiApplication::font()).height() + lineSpace)
{
    setFlags(Qt::Popup | Qt::FramelessWindowHint);
    setTitle(u"Portolan menu"_s);
    int width = 0;
    for (const QString &label : labels)
        width = std::max(width, QFontMetrics(QGuiApplication::font()).horizontalAdvance(label));
    resize(width + 2 * (padding + border), int(labels.size()) * m_entryHeight + 2 * border);
}

void XEmbedMenu::open()
{
    const QPoint pointer = QCursor::pos();
    QRect frame(pointer, size());
    if (const QScreen *at = QGuiApplication::screenAt(pointer)) {
        // Towards the middle of the screen, so that the tray at its edge stays visible.
        const QRect free = at->geometry();
        if (frame.bottom() > free.bottom())
            frame.moveBottom(pointer.y());
        frame.moveLeft(
            std::clamp(frame.x(), free.left(), std::max(free.left(), free.right() + 1 - frame.width())));
    }
    m_current = -1;
    setPosition(frame.topLeft());
    show();
    raise();
}

void XEmbedMenu::exposeEvent(QExposeEvent *event)
{
    QRasterWindow::exposeEvent(event);
    // Like every menu: a press elsewhere is to close it, and keys are for it. Both need a window that is on
    // the screen.
    if (isExposed())
        setGrabs(true);
}

void XEmbedMenu::hideEvent(QHideEvent *event)
{
    setGrabs(false);
    QRasterWindow::hideEvent(event);
}

void XEmbedMenu::setGrabs(bool enabled)
{
    setMouseGrabEnabled(enabled);
    setKeyboardGrabEnabled(enabled);
}

void XEmbedMenu::paintEvent(QPaintEvent *)
{
    const QPalette palette = QGuiApplication::palette();
    QPainter painter(this);
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawRect(0, 0, width() - 1, height() - 1);
    for (qsizetype index = 0; index < m_labels.size(); ++index) {
        const bool isCurrent = index == m_current;
        if (isCurrent)
            painter.fillRect(entry(index), palette.color(QPalette::Highlight));
        painter.setPen(palette.color(isCurrent ? QPalette::HighlightedText : QPalette::Text));
        painter.drawText(entry(index).adjusted(padding, 0, 0, 0), Qt::AlignVCenter, m_labels[index]);
    }
}

void XEmbedMenu::mouseMoveEvent(QMouseEvent *event)
{
    setCurrent(entryAt(event->position()));
}

void XEmbedMenu::mousePressEvent(QMouseEvent *event)
{
    if (!QRectF(QPointF(), QSizeF(size())).contains(event->position()))
        hide();
}

void XEmbedMenu::mouseReleaseEvent(QMouseEvent *event)
{
    if (const qsizetype index = entryAt(event->position()); index >= 0)
        choose(index);
}

void XEmbedMenu::keyPressEvent(QKeyEvent *event)
{
    const qsizetype count = m_labels.size();
    switch (event->key()) {
    case Qt::Key_Down:
        return setCurrent((m_current + 1) % count);
    case Qt::Key_Up:
        return setCurrent(m_current <= 0 ? count - 1 : m_current - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return m_current >= 0 ? choose(m_current) : void();
    case Qt::Key_Escape:
        hide();
    }
}

QRect XEmbedMenu::entry(qsizetype index) const
{
    return {border, border + int(index) * m_entryHeight, width() - 2 * border, m_entryHeight};
}

qsizetype XEmbedMenu::entryAt(QPointF position) const
{
    for (qsizetype index = 0; index < m_labels.size(); ++index)
        if (entry(index).contains(position.toPoint()))
            return index;
    return -1;
}

void XEmbedMenu::setCurrent(qsizetype index)
{
    m_current = index;
    update();
}

void XEmbedMenu::choose(qsizetype index)
{
    hide();
    Q_EMIT chosen(index);
}

} // namespace portolan
