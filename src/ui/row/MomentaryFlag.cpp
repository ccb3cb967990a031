#include "MomentaryFlag.h"

#include <QTimer>

void MomentaryFlag::raise()
{
    m_isRaised = true;
    QTimer::singleShot(m_duration, Qt::PreciseTimer, this, [this] { m_isRaised = false; });
}
