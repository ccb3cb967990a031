// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQmlIntegration>

namespace portolan {

/// Whether the window of this item is exposed, for animations and timers to stop while it is not. It shows
/// nothing.
class WindowExposure : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isExposed READ isExposed NOTIFY isExposedChanged FINAL)

public:
    [[nodiscard]] bool isExposed() const { return m_isExposed; }

Q_SIGNALS:
    void isExposedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void check();

    QPointer<QQuickWindow> m_window;
    bool m_isExposed = false;
};

} // namespace portolan
