// SPDX-License-Identifier: MIT
#include "StatusNotifierItem.h"

#include "ActivationToken.h"

#include <QDBusMetaType>
#include <QtEndian>

#include <algorithm>
#include <limits>

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

QVariantMap propertiesOf(const QString &iconName, const QString &iconThemePath, const QList<QImage> &images,
                         const QDBusObjectPath &menu)
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    QList<StatusNotifierPixmap> pixmaps;
    std::ranges::transform(images, std::back_inserter(pixmaps), toPixmap);
    const QVariant noPixmap = QVariant::fromValue(QList<StatusNotifierPixmap>());
    return {
        {u"Category"_s, u"ApplicationStatus"_s},
        {u"Id"_s, u"portolan"_s},
        {u"Title"_s, u"Portolan"_s},
        {u"Status"_s, u"Active"_s},
        {u"WindowId"_s, 0},
        {u"IconName"_s, iconThemePath.isEmpty() ? QString() : iconName},
        {u"IconThemePath"_s, iconThemePath},
        {u"IconPixmap"_s, QVariant::fromValue(pixmaps)},
        {u"OverlayIconName"_s, QString()},
        {u"OverlayIconPixmap"_s, noPixmap},
        {u"AttentionIconName"_s, QString()},
        {u"AttentionIconPixmap"_s, noPixmap},
        {u"AttentionMovieName"_s, QString()},
        {u"ToolTip"_s, QVariant::fromValue(StatusNotifierToolTip{{}, {}, u"Portolan"_s, {}})},
        {u"ItemIsMenu"_s, false},
        {u"Menu"_s, QVariant::fromValue(menu)},
    };
}

// X11 and Wayland have no coordinates beyond 16 bits, and computing with larger ones could overflow.
int coordinate(const QVariant &value)
{
    using Limits = std::numeric_limits<qint16>;
    return std::clamp<int>(value.toInt(), Limits::min(), Limits::max());
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QString &iconName, const QString &iconThemePath,
                                       const QList<QImage> &images, const QDBusObjectPath &menu)
    : BusObject(u"org.kde.StatusNotifierItem"_s,
                {
                    {u"Activate"_s, {u"i"_s, u"i"_s}, {}},
                    {u"SecondaryActivate"_s, {u"i"_s, u"i"_s}, {}},
                    {u"ContextMenu"_s, {u"i"_s, u"i"_s}, {}},
                    {u"Scroll"_s, {u"i"_s, u"s"_s}, {}},
                    {u"ProvideXdgActivationToken"_s, {u"s"_s}, {}},
                },
                propertiesOf(iconName, iconThemePath, images, menu))
{
    m_click.setSingleShot(true);
    connect(&m_click, &QTimer::timeout, this, [this] { Q_EMIT activated(m_anchor); });
}

std::optional<QVariantList> StatusNotifierItem::call(const QString &method, const QVariantList &arguments)
{
    if (method == "ProvideXdgActivationToken"_L1) {
        ActivationToken::keep(arguments[0].toString());
    } else if (method != "Scroll"_L1) {
        // The middle button does the same as the left one; ContextMenu comes only from panels that show no
        // D-Bus menu.
        m_anchor = {coordinate(arguments[0]), coordinate(arguments[1])};
        m_click.start(0);
    }
    return QVariantList();
}

} // namespace portolan
