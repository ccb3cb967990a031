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

/// Lies over rows that may move or go at any moment, and swallows a press that is not meant for the row under
/// it: one that repeats another (Presses), or one on a row that has not stood there for a while. Every other
/// press goes through to the rows.
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
