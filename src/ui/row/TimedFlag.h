#pragma once

#include <QObject>
#include <QProperty>
#include <QtQmlIntegration>

namespace portolan {

/// A flag that is cleared by a timer. Main thread.
class TimedFlag : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int duration MEMBER m_duration FINAL)
    Q_PROPERTY(bool isRaised READ isRaised NOTIFY isRaisedChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] bool isRaised() const { return m_isRaised.valueBypassingBindings(); }

    /// Sets the flag, to be cleared after `duration` milliseconds. A further call while it is set does not
    /// extend that time.
    Q_INVOKABLE void raise();

Q_SIGNALS:
    void isRaisedChanged();

private:
    int m_duration = 1100;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(TimedFlag, bool, m_isRaised, false, &TimedFlag::isRaisedChanged)
};

} // namespace portolan
