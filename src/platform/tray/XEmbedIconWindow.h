#pragma once

#include <QImage>
#include <QList>
#include <QRasterWindow>

namespace portolan {

/// The window that shows a status icon inside of a tray's window.
class XEmbedIconWindow final : public QRasterWindow
{
    Q_OBJECT

public:
    /// Shows that one of `images` that suits the size the tray gives. Without alpha what lies behind is taken
    /// from the tray.
    XEmbedIconWindow(const QList<QImage> &images, bool hasAlpha);

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] const QImage &imageFor(int side) const;

    QList<QImage> m_images;
    bool m_hasAlpha;
};

} // namespace portolan
