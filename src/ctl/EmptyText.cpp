#include "EmptyText.h"

namespace portolan {

using namespace Qt::StringLiterals;

QString emptyText(bool isSearching, int columns, const Ink &ink)
{
    const QString title = isSearching ? u"No matches"_s : u"Nothing running"_s;
    const QString message = isSearching ? u" · Try a different name or port."_s
                                        : u" · Start a dev server and it appears here automatically."_s;
    const bool fits = title.size() + message.size() <= columns;
    return ink(Tone::strong, title) + (fits ? ink(Tone::faint, message) : QString());
}

} // namespace portolan
