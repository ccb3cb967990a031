// SPDX-License-Identifier: MIT
// lsof's field output of a working directory.
#include "LsofOutput.h"
#include "PrintedName.h"
#include "Require.h"

#include <QByteArrayView>
#include <QStringList>

#include <algorithm>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    const std::optional<QString> folder = PortScanner::parseCwd(42, text);
    if (!folder)
        return 0;
    const QStringList lines = text.split(u'\n');
    require(std::ranges::any_of(lines, [&](const QString &line) {
        return line.startsWith(u'n') && !line.startsWith(QStringLiteral("n/proc/42/cwd (")) &&
               PrintedName::plain(line.sliced(1)) == *folder;
    }));
    return 0;
}

} // namespace portolan
