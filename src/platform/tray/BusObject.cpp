// SPDX-License-Identifier: MIT
#include "BusObject.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>

#include <algorithm>
#include <utility>

namespace portolan {

using namespace Qt::StringLiterals;

BusObject::BusObject(QString interface, QList<Method> methods, QVariantMap properties)
    : m_interface(std::move(interface))
    , m_methods(std::move(methods))
    , m_properties(std::move(properties))
{}

QString BusObject::introspect(const QString &) const
{
    QString xml = u"<interface name=\"%1\">\n"_s.arg(m_interface);
    for (const auto &[name, value] : m_properties.asKeyValueRange())
        xml += u"<property name=\"%1\" type=\"%2\" access=\"read\"/>\n"_s.arg(
            name, QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType())));
    for (const Method &method : m_methods) {
        xml += u"<method name=\"%1\">\n"_s.arg(method.name);
        for (const QString &type : method.parameters)
            xml += u"<arg type=\"%1\" direction=\"in\"/>\n"_s.arg(type);
        for (const QString &type : method.results)
            xml += u"<arg type=\"%1\" direction=\"out\"/>\n"_s.arg(type);
        xml += "</method>\n"_L1;
    }
    return xml + "</interface>\n"_L1;
}

bool BusObject::handleMessage(const QDBusMessage &message, const QDBusConnection &bus)
{
    if (m_second.hasExpired()) {
        m_second.setRemainingTime(1000);
        m_calls = 0;
    }
    const bool isFlood = ++m_calls > callsPerSecond;
    if (!isFlood && message.interface() == "org.freedesktop.DBus.Introspectable"_L1)
        return false; // Qt answers it with introspect()
    const bool isProperties = message.interface() == "org.freedesktop.DBus.Properties"_L1;
    const Method *const method = isProperties ? nullptr : methodOf(message);
    std::optional<QVariantList> results;
    if (isProperties && !isFlood)
        results = readProperties(message);
    else if (method && !isFlood && message.signature() == method->parameters.join(QString()))
        results = call(method->name, message.arguments());
    if (!message.isReplyRequired())
        return true;
    // Panels try methods that not every item has, and rely on this error.
    const auto error = isFlood                  ? QDBusError::LimitsExceeded
                       : isProperties || method ? QDBusError::InvalidArgs
                                                : QDBusError::UnknownMethod;
    bus.send(results ? message.createReply(*results) : message.createErrorReply(error, u"refused"_s));
    return true;
}

const BusObject::Method *BusObject::methodOf(const QDBusMessage &message) const
{
    const auto found = std::ranges::find(m_methods, message.member(), &Method::name);
    const bool isOurs = message.interface() == m_interface || message.interface().isEmpty();
    return isOurs && found != m_methods.end() ? &*found : nullptr;
}

std::optional<QVariantList> BusObject::readProperties(const QDBusMessage &message) const
{
    const QString interface = message.arguments().value(0).toString();
    if (interface != m_interface && !interface.isEmpty())
        return std::nullopt;
    if (message.member() == "GetAll"_L1 && message.signature() == "s"_L1)
        return QVariantList{m_properties};
    const QVariant value = m_properties.value(message.arguments().value(1).toString());
    if (message.member() != "Get"_L1 || message.signature() != "ss"_L1 || !value.isValid())
        return std::nullopt;
    return QVariantList{QVariant::fromValue(QDBusVariant(value))};
}

} // namespace portolan
