#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QStringList>

#include <memory>

namespace portolan {

/// How the status icon looks, in the forms that the various panels ask for.
struct StatusIconArt
{
    QByteArray symbolicSvg; ///< one colour, which the panel replaces by its own
    QList<QImage> images;   ///< for panels that need pixels; square, one per size
};

/// The program's icon in the desktop's status area, with the menu entries "Open Portolan" and "Quit". It
/// looks for a panel by itself, now and later, and follows panels that go and come. Main thread only.
class StatusIcon : public QObject
{
    Q_OBJECT

public:
    /// Whether a panel shows the icon. `Unknown` lasts from the start until the first answer of the system.
    enum class Host { Unknown, Present, Absent };
    Q_ENUM(Host)

    [[nodiscard]] Host host() const { return m_host; }

Q_SIGNALS:
    /// The icon was clicked. `anchor` is where, in device pixels; the null point if the panel did not tell.
    void activated(QPoint anchor);
    /// "Open Portolan" was chosen from the icon's menu.
    void openRequested();
    /// "Quit" was chosen from the icon's menu.
    void quitRequested();
    void hostChanged(StatusIcon::Host host);

protected:
    /// The menu's entries in order; `chooseMenuEntry` says which of them was chosen.
    [[nodiscard]] static QStringList menuLabels();
    void chooseMenuEntry(qsizetype index);
    void setHost(Host host);

private:
    Host m_host = Host::Unknown;
};

/// The icon as this desktop can show it.
[[nodiscard]] std::unique_ptr<StatusIcon> makeStatusIcon(const StatusIconArt &art);

} // namespace portolan
