// SPDX-License-Identifier: MIT
// ps's row of one process, and its elapsed time.
#include "ProcessInspector.h"
#include "Require.h"

#include <QByteArrayView>

#include <cmath>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    const qint64 seconds = ProcessInspector::parseETime(text);
    require(ProcessInspector::parseETime(text + u':') == seconds);

    const std::optional<ProcessStats> stats = ProcessInspector::parse(text);
    require(ProcessInspector::parse(u' ' + text + u'\n') == stats);
    if (stats)
        require(std::isfinite(stats->cpuPercent) && std::isfinite(stats->memoryMB));
    return 0;
}

} // namespace portolan
