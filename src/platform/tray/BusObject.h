// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QList>
#include <QVariantMap>

#include <optional>
#include <tuple>

namespace portolan {

/// A structure on the bus, whose members are the elements of `fields()`.
template <typename T>
concept BusStructure = requires(T &value)
{
    T::fields(value);
};

template <BusStructure T>
QDBusArgument &operator<<(QDBusArgument &out, const T &value)
{
    out.beginStructure();
    std::apply([&out](const auto &...field) { (out << ... << field); }, T::fields(value));
    out.endStructure();
    return out;
}

template <BusStructure T>
const QDBusArgument &operator>>(const QDBusArgument &in, T &value)
{
    in.beginStructure();
    std::apply([&in](auto &...field) { (in >> ... >> field); }, T::fields(value));
    in.endStructure();
    return in;
}

/// An object on the bus with the methods and constant properties of one interface, and nothing else: Qt would
/// also export the properties of QObject. Main thread.
class BusObject : public QDBusVirtualObject
{
public:
    /// More calls than these are refused, so that a flood cannot fill the memory with replies.
    static constexpr int callsPerSecond = 100;

    struct Method
    {
        QString name;
        QStringList parameters; ///< the signatures of their types
        QStringList results;
    };

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override;

protected:
    BusObject(QString interface, QList<Method> methods, QVariantMap properties);

    /// Calls a method with arguments of the types that it has, and returns its results; no value if an
    /// argument is invalid.
    virtual std::optional<QVariantList> call(const QString &method, const QVariantList &arguments) = 0;

private:
    [[nodiscard]] const Method *methodOf(const QDBusMessage &message) const; // null if there is none
    [[nodiscard]] std::optional<QVariantList> readProperties(const QDBusMessage &message) const;

    const QString m_interface;
    const QList<Method> m_methods;
    const QVariantMap m_properties;
    QDeadlineTimer m_second;
    int m_calls = 0;
};

} // namespace portolan
