// SPDX-License-Identifier: MIT
// A desktop entry, possibly edited by the user.
#include "DesktopEntry.h"
#include "Require.h"

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const DesktopEntry entry(bytes);
    (void)entry.list("OnlyShowIn");
    (void)DesktopEntry::programOf(entry.value("Exec").value_or(bytes));

    const QString text = QString::fromUtf8(bytes);
    const QByteArray escaped = DesktopEntry::escaped(text);
    require(!escaped.contains('\n'));
    if (!text.contains(QChar::ReplacementCharacter))
        require(DesktopEntry::unescaped(escaped) == text);
    return 0;
}

} // namespace portolan
