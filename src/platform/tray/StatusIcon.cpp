// SPDX-License-Identifier: MIT
#include "StatusIcon.h"

namespace portolan {

using namespace Qt::StringLiterals;

void StatusIcon::setHost(Host host)
{
    if (m_host == host)
        return;
    m_host = host;
    Q_EMIT hostChanged();
}

QStringList StatusIcon::menuLabels()
{
    return {u"Open Portolan"_s, u"Quit"_s};
}

void StatusIcon::chooseMenuEntry(qsizetype index)
{
    if (index == 0)
        Q_EMIT openRequested();
    else
        Q_EMIT quitRequested();
}

} // namespace portolan
