// SPDX-License-Identifier: MIT
#include "XSettings.h"

#include "XcbDisplay.h"

#include <QDataStream>
#include <QIODevice>

#include <optional>

namespace portolan {

namespace {

enum Type : quint8 { Integer, String, Color };

// Texts are padded to a multiple of four bytes.
std::optional<QString> text(QDataStream &in, quint32 length)
{
    if (length > in.device()->bytesAvailable())
        return std::nullopt;
    QByteArray bytes(length, Qt::Uninitialized);
    in.readRawData(bytes.data(), int(length));
    in.skipRawData(int(-length & 3));
    return QString::fromUtf8(bytes);
}

std::optional<QVariant> value(QDataStream &in, quint8 type)
{
    qint32 number = 0;
    if (type == Color)
        return in.skipRawData(8) == 8 ? std::optional(QVariant()) : std::nullopt;
    in >> number;
    if (type == Integer && in.status() == QDataStream::Ok)
        return number;
    return type == String ? text(in, quint32(number)) : std::nullopt;
}

} // namespace

QVariantHash XSettings::read()
{
    const XcbDisplay display;
    if (!display)
        return {};
    const QByteArray selection = "_XSETTINGS_S" + QByteArray::number(display.screenNumber());
    const xcb_window_t daemon = display.selectionOwner(display.atom(selection));
    return daemon ? parse(display.bytes(daemon, display.atom("_XSETTINGS_SETTINGS"))) : QVariantHash();
}

QVariantHash XSettings::parse(const QByteArray &data)
{
    QDataStream in(data);
    quint8 byteOrder = 0;
    quint32 count = 0;
    in >> byteOrder;
    in.setByteOrder(byteOrder == 0 ? QDataStream::LittleEndian : QDataStream::BigEndian);
    in.skipRawData(3 + 4); // padding, serial number
    in >> count;
    QVariantHash settings;
    for (; count > 0; --count) {
        quint8 type = 0;
        quint16 length = 0;
        in >> type;
        in.skipRawData(1);
        in >> length;
        const auto name = text(in, length);
        in.skipRawData(4); // serial number
        const auto found = value(in, type);
        if (!name || !found || in.status() != QDataStream::Ok)
            break;
        settings.insert(*name, *found);
    }
    return settings;
}

} // namespace portolan
