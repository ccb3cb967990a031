// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QStringList>

#include <memory>

namespace portolan {

/// The image of the status icon in the formats that panels need.
struct StatusIconArt
{
    QByteArray symbolicSvg; ///< in one colour, for panels that replace it
    QList<QImage> images;   ///< square, one per size, in ascending order
};

/// The program's icon in the desktop's status area, with the menu entries "Open Portolan" and "Quit". It is
/// shown in every panel that starts or restarts while it exists. Main thread only.
class StatusIcon : public QObject
{
    Q_OBJECT

public:
    /// Whether a panel shows the icon; `Unknown` until the first reply from the bus.
    enum class Host { Unknown, Present, Absent };

    [[nodiscard]] Host host() const { return m_host; }

Q_SIGNALS:
    /// The icon was clicked at `anchor`, in device pixels; a null point if the panel does not report it.
    void activated(QPoint anchor);
    /// The pointer is on the icon, which shows its menu; not emitted where the panel shows the menu itself.
    void menuShown();
    /// "Open Portolan" was chosen from the icon's menu.
    void openRequested();
    /// "Quit" was chosen from the icon's menu.
    void quitRequested();
    void hostChanged();

protected:
    /// The entries of the menu in order; call chooseMenuEntry() with the index of the chosen one.
    [[nodiscard]] static QStringList menuLabels();
    void chooseMenuEntry(qsizetype index);
    void setHost(Host host);

private:
    Host m_host = Host::Unknown;
};

/// Creates the icon for the current desktop session.
[[nodiscard]] std::unique_ptr<StatusIcon> makeStatusIcon(const StatusIconArt &art);

} // namespace portolan
