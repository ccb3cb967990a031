// SPDX-License-Identifier: MIT
#pragma once

#include "BusObject.h"
#include "StatusIcon.h"

#include <QDBusObjectPath>
#include <QTimer>

namespace portolan {

/// The pixels of an icon: (iiay), as ARGB in network byte order, not premultiplied.
struct StatusNotifierPixmap
{
    int width = 0;
    int height = 0;
    QByteArray argb;

    static auto fields(auto &self) { return std::tie(self.width, self.height, self.argb); }
};

/// The tool tip: (sa(iiay)ss).
struct StatusNotifierToolTip
{
    QString iconName;
    QList<StatusNotifierPixmap> pixmaps;
    QString title;
    QString text;

    static auto fields(auto &self) { return std::tie(self.iconName, self.pixmaps, self.title, self.text); }
};

/// The status icon, for the bus. It never changes, so it emits none of the protocol's signals.
class StatusNotifierItem : public BusObject
{
    Q_OBJECT

public:
    /// `iconThemePath` is a folder of icon themes that contains `iconName`. If it is empty, no name is
    /// exported, because some panels show nothing for a name that they cannot find.
    StatusNotifierItem(const QString &iconName, const QString &iconThemePath, const QList<QImage> &images,
                       const QDBusObjectPath &menu);

Q_SIGNALS:
    /// The icon was clicked; several clicks that arrive at once count as one, the last.
    void activated(QPoint anchor);

protected:
    std::optional<QVariantList> call(const QString &method, const QVariantList &arguments) override;

private:
    QPoint m_anchor;
    QTimer m_click;
};

} // namespace portolan
