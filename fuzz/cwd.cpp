// lsof's field output of a working directory.
#include "PortScanner_p.h"
#include "Require.h"

#include <QByteArrayView>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    const std::optional<QString> folder = PortScanner::parseCwd(42, text);
    if (!folder)
        return 0;
    require(!folder->contains(u'\n'));
    require((u'\n' + text + u'\n').contains(QStringLiteral("\nn") + *folder + u'\n'));
    require(!folder->startsWith(QStringLiteral("/proc/42/cwd (")));
    return 0;
}
