#include "MomentaryFlag.h"

#include <QTimer>

namespace portolan {

void MomentaryFlag::raise()
{
    m_isRaised = true;
    QTimer::singleShot(m_duration, Qt::PreciseTimer, this, [this] { m_isRaised = false; });
}

} // namespace portolan
