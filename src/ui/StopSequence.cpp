#include "StopSequence.h"

#include <QTimer>

void StopSequence::run(const Service &service)
{
    if (!m_store || !m_actions)
        return;
    m_actions->stop(service);
    m_store->removeService(service);
    QTimer::singleShot(m_rescanDelay, Qt::PreciseTimer, m_store,
                       [store = m_store.data()] { store->refreshNow(); });
}
