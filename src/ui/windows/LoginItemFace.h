#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// Whether the program starts when the user logs in, as the views see it. Main thread.
class LoginItemFace : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LoginItem)
    QML_UNCREATABLE("Handed to the views by the program")

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Asks for `enabled` and returns what holds afterwards, which is not `enabled` where that failed.
    Q_INVOKABLE virtual bool setEnabled(bool enabled) = 0;
};

} // namespace portolan
