#pragma once

#include <QQuickView>
#include <QVariantMap>

/// A window filled by a RootView.
class RootWindow : public QQuickView
{
    Q_OBJECT

public:
    /// `properties` are what the RootView requires.
    RootWindow(QQmlEngine &engine, const QVariantMap &properties);

    /// Shows the window, if it is not shown yet, above the others and with the keyboard's focus.
    void bringToFront();

Q_SIGNALS:
    /// The window came into view, having been out of it.
    void appeared();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /// Escape was pressed and nothing inside wanted it.
    virtual void escapePressed() {}
};
