// SPDX-License-Identifier: MIT
#include "PressGuard.h"

#include "Presses.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <algorithm>

using namespace std::chrono_literals;

namespace portolan {

namespace {
constexpr auto reactionTime = 150ms; // a press that follows a change sooner was aimed at the previous row
} // namespace

PressGuard::PressGuard(QQuickItem *parent)
    : QQuickItem(parent)
{
    setAcceptedMouseButtons(Qt::AllButtons);
}

void PressGuard::componentComplete()
{
    QQuickItem::componentComplete();
    m_presses = qmlEngine(this)->singletonInstance<Presses *>(qmlTypeId("Portolan", 1, 0, "Presses"));
}

void PressGuard::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange) {
        if (m_window)
            m_window->disconnect(this);
        m_window = data.window;
        if (m_window) {
            // Rows only move from one frame to the next, or with the window.
            connect(m_window, &QQuickWindow::afterAnimating, this, &PressGuard::track);
            connect(m_window, &QWindow::xChanged, this, &PressGuard::track);
            connect(m_window, &QWindow::yChanged, this, &PressGuard::track);
        }
    }
    QQuickItem::itemChange(change, data);
}

void PressGuard::track()
{
    QHash<QQuickItem *, Place> places;
    const QList<QQuickItem *> rows = m_rows ? m_rows->childItems() : QList<QQuickItem *>();
    for (QQuickItem *row : rows) {
        const Place place{row->mapToGlobal(QPointF()), Clock::now()};
        const Place before = m_places.value(row, place);
        places.insert(row, before.corner == place.corner ? before : place);
    }
    m_places.swap(places);
}

bool PressGuard::isSteady(QQuickItem *row) const
{
    const auto known = m_places.find(row);
    return known != m_places.end() && known->corner == row->mapToGlobal(QPointF()) &&
           Clock::now() - known->since >= reactionTime;
}

bool PressGuard::isMeant(const QPointF &position) const
{
    if (m_presses->isRepeated())
        return false;
    const QList<QQuickItem *> rows = m_rows ? m_rows->childItems() : QList<QQuickItem *>();
    return std::ranges::all_of(rows, [&](QQuickItem *row) {
        return !row->isVisible() || !row->contains(mapToItem(row, position)) || isSteady(row);
    });
}

void PressGuard::mousePressEvent(QMouseEvent *event)
{
    event->setAccepted(!isMeant(event->position()));
}

void PressGuard::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

} // namespace portolan
