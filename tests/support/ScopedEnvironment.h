// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace portolan {

/// Sets or unsets an environment variable for a scope.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const char *name, const std::optional<QByteArray> &value)
        : m_name(name)
    {
        if (qEnvironmentVariableIsSet(name))
            m_before = qgetenv(name);
        set(value);
    }
    ~ScopedEnvironment() { set(m_before); }
    Q_DISABLE_COPY_MOVE(ScopedEnvironment)

private:
    void set(const std::optional<QByteArray> &value)
    {
        if (value)
            qputenv(m_name, *value);
        else
            qunsetenv(m_name);
    }

    const char *m_name;
    std::optional<QByteArray> m_before;
};

} // namespace portolan
