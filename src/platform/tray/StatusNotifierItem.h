#pragma once

#include "StatusIcon.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QString>

namespace portolan {

/// The pixels of an icon: (iiay), as ARGB in network byte order, not premultiplied.
struct StatusNotifierPixmap
{
    int width = 0;
    int height = 0;
    QByteArray argb;
};

/// The tool tip: (sa(iiay)ss).
struct StatusNotifierToolTip
{
    QString iconName;
    QList<StatusNotifierPixmap> pixmaps;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &out, const StatusNotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &in, StatusNotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &out, const StatusNotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &in, StatusNotifierToolTip &toolTip);

/// The status icon, exported over D-Bus. It never changes, so it emits none of the protocol's signals.
class StatusNotifierItem : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT FINAL)
    Q_PROPERTY(QString Id READ id CONSTANT FINAL)
    Q_PROPERTY(QString Title READ title CONSTANT FINAL)
    Q_PROPERTY(QString Status READ status CONSTANT FINAL)
    Q_PROPERTY(int WindowId READ windowId CONSTANT FINAL)
    Q_PROPERTY(QString IconName READ iconName CONSTANT FINAL)
    Q_PROPERTY(QString IconThemePath READ iconThemePath CONSTANT FINAL)
    Q_PROPERTY(QList<portolan::StatusNotifierPixmap> IconPixmap READ iconPixmap CONSTANT FINAL)
    Q_PROPERTY(QString OverlayIconName READ empty CONSTANT FINAL)
    Q_PROPERTY(QList<portolan::StatusNotifierPixmap> OverlayIconPixmap READ noPixmap CONSTANT FINAL)
    Q_PROPERTY(QString AttentionIconName READ empty CONSTANT FINAL)
    Q_PROPERTY(QList<portolan::StatusNotifierPixmap> AttentionIconPixmap READ noPixmap CONSTANT FINAL)
    Q_PROPERTY(QString AttentionMovieName READ empty CONSTANT FINAL)
    Q_PROPERTY(portolan::StatusNotifierToolTip ToolTip READ toolTip CONSTANT FINAL)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT FINAL)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT FINAL)

public:
    /// `iconThemePath` is a folder of icon themes that contains `iconName`. If it is empty, no name is
    /// exported, because some panels show nothing for a name that they cannot find.
    StatusNotifierItem(const QString &iconName, const QString &iconThemePath, const QList<QImage> &images,
                       const QDBusObjectPath &menu, QObject *parent = nullptr);

public Q_SLOTS:
    // The methods of org.kde.StatusNotifierItem.
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    void activated(QPoint anchor);

private:
    QString category() const;
    QString id() const;
    QString title() const;
    QString status() const;
    int windowId() const { return 0; }
    QString iconName() const { return m_iconName; }
    QString iconThemePath() const { return m_iconThemePath; }
    QList<StatusNotifierPixmap> iconPixmap() const { return m_pixmaps; }
    QString empty() const { return {}; }
    QList<StatusNotifierPixmap> noPixmap() const { return {}; }
    StatusNotifierToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return m_menu; }

    QString m_iconName;
    QString m_iconThemePath;
    QList<StatusNotifierPixmap> m_pixmaps;
    QDBusObjectPath m_menu;
};

} // namespace portolan
