#include "StopSequence.h"

#include <QTimer>

#include <chrono>

namespace portolan {

namespace {
constexpr std::chrono::milliseconds rescanDelay(1400); // an immediate scan would still find the listener
}

void StopSequence::run(const Service &service)
{
    if (!m_store || !m_actions)
        return;
    m_actions->stop(service);
    m_store->removeService(service);
    QTimer::singleShot(rescanDelay, Qt::PreciseTimer, m_store,
                       [store = m_store.data()] { store->refresh(); });
}

} // namespace portolan
