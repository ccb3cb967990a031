// SPDX-License-Identifier: MIT
#pragma once

#include <QRasterWindow>
#include <QStringList>

namespace portolan {

/// The status icon's menu in a tray that shows none itself, in the desktop's font and colours. It holds the
/// pointer and the keyboard until it closes.
class XEmbedMenu final : public QRasterWindow
{
    Q_OBJECT

public:
    explicit XEmbedMenu(const QStringList &labels);

    /// Shows the menu at the pointer.
    void open();

Q_SIGNALS:
    /// The entry with this index was chosen, and the menu is closed.
    void chosen(qsizetype index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void exposeEvent(QExposeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QRect entry(qsizetype index) const;
    [[nodiscard]] qsizetype entryAt(QPointF position) const; // -1 if there is none
    void setCurrent(qsizetype index);
    void choose(qsizetype index);
    void setGrabs(bool enabled);

    const QStringList m_labels;
    const int m_entryHeight;
    qsizetype m_current = -1;
};

} // namespace portolan
