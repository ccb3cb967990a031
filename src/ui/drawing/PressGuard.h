// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QPointer>
#include <QQuickItem>
#include <QtQmlIntegration>

#include <chrono>

class QQuickWindow;

namespace portolan {

class Presses;

/// Covers rows that may move or disappear at any moment, and discards a press that repeats another (Presses),
/// or one on a row that has only just moved there. Every other press is passed on to the rows.
class PressGuard : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// The item whose children are the rows.
    Q_PROPERTY(QQuickItem *rows MEMBER m_rows REQUIRED FINAL)

public:
    explicit PressGuard(QQuickItem *parent = nullptr);

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    using Clock = std::chrono::steady_clock;

    struct Place
    {
        QPointF corner; // on the screen
        Clock::time_point since;
    };

    void track();
    [[nodiscard]] bool isSteady(QQuickItem *row) const;
    [[nodiscard]] bool isMeant(const QPointF &position) const;

    Presses *m_presses = nullptr; // the engine's
    QPointer<QQuickItem> m_rows;
    QPointer<QQuickWindow> m_window;
    QHash<QQuickItem *, Place> m_places;
};

} // namespace portolan
