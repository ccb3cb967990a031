// SPDX-License-Identifier: MIT
#include "Termination.h"

#include "ProcessHandle.h"

#include <QTimer>

#include <csignal>
#include <utility>

namespace portolan {

void Termination::start(std::shared_ptr<const ProcessHandle> process, QObject *owner)
{
    process->send(SIGTERM);
    QTimer::singleShot(gracePeriod, Qt::PreciseTimer, owner, [process = std::move(process)] {
        if (process->send(0))
            process->send(SIGKILL);
    });
}

} // namespace portolan
