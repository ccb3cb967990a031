#include "XEmbedStatusIcon.h"

#include <QIcon>
#include <QPixmap>

using namespace Qt::StringLiterals;

namespace {

QIcon toIcon(const QList<QImage> &images)
{
    QIcon icon;
    for (const QImage &image : images)
        icon.addPixmap(QPixmap::fromImage(image));
    return icon;
}

} // namespace

XEmbedStatusIcon::XEmbedStatusIcon(const StatusIconArt &art)
    : m_icon(toIcon(art.images))
{
    const QStringList labels = menuLabels();
    for (qsizetype index = 0; index < labels.size(); ++index)
        connect(m_menu.addAction(labels[index]), &QAction::triggered, this,
                [this, index] { chooseMenuEntry(index); });
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick)
            Q_EMIT activated({}); // the pointer is at the icon
    });
    m_icon.setToolTip(u"Portolan"_s);
    m_icon.setContextMenu(&m_menu);
    m_icon.show();
    setHost(Host::Present);
}
