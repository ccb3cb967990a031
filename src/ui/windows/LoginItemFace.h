#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// Whether the program starts at login. The program passes an implementation to the views. Main thread.
class LoginItemFace : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LoginItem)
    QML_UNCREATABLE("Passed to the views by the program")

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Enables or disables it and returns the actual state afterwards, which differs if that failed.
    Q_INVOKABLE virtual bool setEnabled(bool enabled) = 0;
};

} // namespace portolan
