#pragma once

#include <QObject>
#include <QPointer>
#include <QProperty>
#include <QQuickWindow>
#include <QtQmlIntegration>

/// Whether anything of a window can be seen, so that nothing moves or ticks where nobody looks.
class WindowExposure : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged FINAL)
    Q_PROPERTY(bool isExposed READ isExposed NOTIFY isExposedChanged BINDABLE bindableIsExposed FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);

    [[nodiscard]] bool isExposed() const { return m_isExposed; }
    [[nodiscard]] QBindable<bool> bindableIsExposed() const { return &m_isExposed; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void isExposedChanged();

private:
    void update();

    QPointer<QQuickWindow> m_window;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WindowExposure, bool, m_isExposed, false,
                                         &WindowExposure::isExposedChanged)
};
