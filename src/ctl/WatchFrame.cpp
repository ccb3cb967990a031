#include "WatchFrame.h"

#include "ServiceTable.h"
#include "TerminalText.h"

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

bool hasBlankLine(Output::Size size) // above the footer
{
    return size.rows > 2;
}

/// How many lines the list can have.
qsizetype listHeight(Output::Size size)
{
    return size.rows - (hasBlankLine(size) ? 2 : 1);
}

bool fits(qsizetype services, Output::Size size)
{
    return services + 1 <= listHeight(size);
}

/// How many services are shown where not all fit: between the header and the line about the others.
qsizetype shownAtOnce(Output::Size size)
{
    return std::max<qsizetype>(0, listHeight(size) - 2);
}

qsizetype lastFirst(qsizetype services, Output::Size size)
{
    return fits(services, size) ? 0 : services - shownAtOnce(size);
}

QString othersText(qsizetype above, qsizetype below)
{
    if (below == 0)
        return u"… %1 above"_s.arg(above);
    return above == 0 ? u"… %1 more"_s.arg(below) : u"… %1 above, %2 more"_s.arg(above).arg(below);
}

/// As much of `table` as fits, from the service `first` on.
QStringList cut(const QStringList &table, qsizetype first, Output::Size size, const TerminalColors &colors)
{
    const qsizetype services = table.size() - 1;
    const qsizetype above = std::clamp<qsizetype>(first, 0, lastFirst(services, size));
    QStringList lines = table.mid(1 + above, shownAtOnce(size));
    const QString others = othersText(above, services - above - lines.size());
    lines.prepend(table.first());
    lines.append(colors.styled(TextStyle::Faint, TerminalText::elided(others, size.columns)));
    return lines.last(std::min(lines.size(), listHeight(size)));
}

QStringList listLines(const WatchFrame::Content &content, Output::Size size, const TerminalColors &colors)
{
    if (!content.lastUpdated.isValid() || listHeight(size) == 0)
        return {};
    const ServiceTable::Look look{.columns = size.columns, .colors = colors, .isSteady = true};
    if (content.services.isEmpty())
        return {ServiceTable::emptyText(content.isSearching, look)};
    QString table = ServiceTable::of(content.services, content.pinnedPorts, look);
    table.chop(1);
    const QStringList lines = table.split(u'\n');
    return fits(content.services.size(), size) ? lines : cut(lines, content.first, size, colors);
}

QString footer(const WatchFrame::Content &content, Output::Size size, const TerminalColors &colors)
{
    const QString state = content.lastUpdated.isValid()
                              ? u"Updated "_s + content.lastUpdated.toLocalTime().toString(u"HH:mm:ss"_s)
                              : u"Looking for servers…"_s;
    QString keys = content.readsKeys ? u" · q to quit"_s : u" · Control-C to quit"_s;
    const bool scrolls = !content.services.isEmpty() && !fits(content.services.size(), size);
    if (content.readsKeys && scrolls)
        keys.prepend(u" · ↑ ↓ to scroll"_s);
    return colors.styled(TextStyle::Faint, TerminalText::elided(state + keys, size.columns));
}

} // namespace

QString WatchFrame::of(const Content &content, Output::Size size, const TerminalColors &colors)
{
    QStringList lines = listLines(content, size, colors);
    if (!lines.isEmpty() && hasBlankLine(size))
        lines.append(QString());
    lines.append(footer(content, size, colors));
    return lines.join(u'\n');
}

qsizetype WatchFrame::scrolled(qsizetype first, Key key, qsizetype services, Output::Size size)
{
    const qsizetype last = lastFirst(services, size);
    const qsizetype page = std::max<qsizetype>(1, shownAtOnce(size));
    qsizetype next = std::clamp<qsizetype>(first, 0, last);
    switch (key) {
    case Key::up:
        next -= 1;
        break;
    case Key::down:
        next += 1;
        break;
    case Key::pageUp:
        next -= page;
        break;
    case Key::pageDown:
        next += page;
        break;
    case Key::home:
        next = 0;
        break;
    case Key::end:
        next = last;
        break;
    case Key::quit:
        break;
    }
    return std::clamp<qsizetype>(next, 0, last);
}

} // namespace portolan
