#include "TimedFlag.h"

#include <QTimer>

namespace portolan {

void TimedFlag::raise()
{
    m_isRaised = true;
    QTimer::singleShot(m_duration, Qt::PreciseTimer, this, [this] { m_isRaised = false; });
}

} // namespace portolan
