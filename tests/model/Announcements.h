#pragma once

#include <QBindable>

namespace portolan {

/// Counts how often a property tells its observers that it changed.
class Announcements
{
public:
    template <typename T>
    explicit Announcements(QBindable<T> property)
        : m_notifier(property.addNotifier([this] { ++m_count; }))
    {}
    Q_DISABLE_COPY_MOVE(Announcements)

    int count() const { return m_count; }

private:
    int m_count = 0;
    QPropertyNotifier m_notifier;
};

} // namespace portolan
