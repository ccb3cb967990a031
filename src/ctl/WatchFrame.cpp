#include "WatchFrame.h"

#include "EmptyText.h"
#include "ServiceTable.h"
#include "TerminalText.h"

using namespace Qt::StringLiterals;

namespace {

QStringList listLines(const WatchFrame::Content &content, Output::Size size, const Ink &ink)
{
    if (!content.lastUpdated.isValid())
        return {};
    if (content.services.isEmpty())
        return {emptyText(content.isSearching, size.columns, ink)};
    QString table = ServiceTable::of(content.services, content.pinnedPorts,
                                     {.columns = size.columns, .ink = ink, .isSteady = true});
    table.chop(1);
    return table.split(u'\n');
}

QString footer(const WatchFrame::Content &content, Output::Size size, const Ink &ink)
{
    const QString state = content.lastUpdated.isValid()
                              ? u"Updated "_s + content.lastUpdated.toLocalTime().toString(u"HH:mm:ss"_s)
                              : u"Looking for servers…"_s;
    const QString end = content.readsKeys ? u" · q to quit"_s : u" · Control-C to quit"_s;
    return ink(Tone::faint, TerminalText::elided(state + end, size.columns));
}

} // namespace

QString WatchFrame::of(const Content &content, Output::Size size, const Ink &ink)
{
    QStringList lines = listLines(content, size, ink);
    const bool hasAir = size.rows > 2; // a line of it above the footer
    const qsizetype room = size.rows - (hasAir ? 2 : 1);
    if (lines.size() > room) {
        const qsizetype hidden = lines.size() - room + 1;
        lines.resize(room);
        if (!lines.isEmpty())
            lines.last() = ink(Tone::faint, TerminalText::elided(u"… %1 more"_s.arg(hidden), size.columns));
    }
    if (!lines.isEmpty() && hasAir)
        lines.append(QString());
    lines.append(footer(content, size, ink));
    return lines.join(u'\n');
}
