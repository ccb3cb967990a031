#include "StatusNotifierItem.h"

#include "ActivationToken.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

StatusNotifierPixmap toPixmap(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.argb.resize(argb.width() * argb.height() * qsizetype(sizeof(QRgb)));
    char *out = pixmap.argb.data();
    for (int y = 0; y < argb.height(); ++y) {
        qToBigEndian<QRgb>(argb.constScanLine(y), argb.width(), out);
        out += argb.width() * qsizetype(sizeof(QRgb));
    }
    return pixmap;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &out, const StatusNotifierPixmap &pixmap)
{
    out.beginStructure();
    out << pixmap.width << pixmap.height << pixmap.argb;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, StatusNotifierPixmap &pixmap)
{
    in.beginStructure();
    in >> pixmap.width >> pixmap.height >> pixmap.argb;
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const StatusNotifierToolTip &toolTip)
{
    out.beginStructure();
    out << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, StatusNotifierToolTip &toolTip)
{
    in.beginStructure();
    in >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    in.endStructure();
    return in;
}

StatusNotifierItem::StatusNotifierItem(const QString &iconName, const QString &iconThemePath,
                                       const QList<QImage> &images, const QDBusObjectPath &menu,
                                       QObject *parent)
    : QObject(parent)
    , m_iconName(iconThemePath.isEmpty() ? QString() : iconName)
    , m_iconThemePath(iconThemePath)
    , m_menu(menu)
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    for (const QImage &image : images)
        m_pixmaps.append(toPixmap(image));
}

void StatusNotifierItem::Activate(int x, int y)
{
    Q_EMIT activated({x, y});
}

// Sent for the middle button, which does the same as the left one.
void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    Q_EMIT activated({x, y});
}

// Sent only by panels that cannot show a D-Bus menu.
void StatusNotifierItem::ContextMenu(int x, int y)
{
    Q_EMIT activated({x, y});
}

void StatusNotifierItem::Scroll(int, const QString &) {}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &token)
{
    ActivationToken::keep(token);
}

QString StatusNotifierItem::category() const
{
    return u"ApplicationStatus"_s;
}

QString StatusNotifierItem::id() const
{
    return u"portolan"_s;
}

QString StatusNotifierItem::title() const
{
    return u"Portolan"_s;
}

QString StatusNotifierItem::status() const
{
    return u"Active"_s;
}

StatusNotifierToolTip StatusNotifierItem::toolTip() const
{
    return {{}, {}, title(), {}};
}

} // namespace portolan
