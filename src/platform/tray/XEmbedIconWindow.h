// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QRasterWindow>

namespace portolan {

/// The window of a status icon, which is embedded into a tray.
class XEmbedIconWindow final : public QRasterWindow
{
    Q_OBJECT

public:
    /// Shows the one of `images` (in ascending order) that fits the size given by the tray. Without
    /// `hasAlpha`, the tray's background is painted behind it.
    XEmbedIconWindow(const QList<QImage> &images, bool hasAlpha);

Q_SIGNALS:
    void clicked();
    void rightClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] const QImage &imageFor(int side) const;

    QList<QImage> m_images;
    bool m_hasAlpha;
};

} // namespace portolan
