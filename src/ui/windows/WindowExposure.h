// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QProperty>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQmlIntegration>

namespace portolan {

/// Whether the window of an item is exposed, for animations and timers to stop while it is not.
class WindowExposure : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *item READ item WRITE setItem NOTIFY itemChanged FINAL)
    Q_PROPERTY(bool isExposed READ isExposed NOTIFY isExposedChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickItem *item() const { return m_item; }
    void setItem(QQuickItem *item);

    [[nodiscard]] bool isExposed() const { return m_isExposed.valueBypassingBindings(); }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void itemChanged();
    void isExposedChanged();

private:
    void watch(QQuickWindow *window);
    void update();

    QPointer<QQuickItem> m_item;
    QPointer<QQuickWindow> m_window;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WindowExposure, bool, m_isExposed, false,
                                         &WindowExposure::isExposedChanged)
};

} // namespace portolan
