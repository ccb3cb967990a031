// SPDX-License-Identifier: MIT
#include "ServiceTable.h"

#include "TerminalText.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

enum Column : quint8 { Mark, Host, Port, Name, ServerKind, Status, Uptime, Cpu, Memory, Pid, Folder };
constexpr size_t columnCount = Folder + 1;

constexpr std::array<QStringView, columnCount> headings{
    u"", u"HOST", u"PORT", u"NAME", u"FRAMEWORK", u"STATUS", u"UPTIME", u"CPU", u"MEMORY", u"PID", u"FOLDER"};
constexpr std::array rightAlignedColumns{Port, Uptime, Cpu, Memory, Pid};

// The columns that are left out if there is not enough space, in this order, and the widths to which long
// texts are shortened before that.
constexpr std::array optionalColumns{Pid, Memory, Cpu, Folder, Uptime, ServerKind};
constexpr int maxHostWidth = 20;
constexpr int minNameWidth = 12;
constexpr int minFolderWidth = 16;
// The same for very narrow terminals. The port is always shown.
constexpr std::array lastOptionalColumns{Mark, Host, Name, Status};
constexpr int narrowNameWidth = 6;
constexpr int narrowStatusWidth = 7; // "Offline"

constexpr int usualStatusWidth = 18; // "Online 200 · 12 ms"

constexpr int gap = 2;
const QString nothing = u"—"_s;

using Row = std::array<StyledText, columnCount>;
using Widths = std::array<int, columnCount>; // 0: not shown

StyledText statusOf(const ListedService &listed)
{
    const Health &health = listed.service.health;
    if (!listed.note.isEmpty())
        return {TerminalText::harmless(listed.note), TextStyle::Pending};
    if (listed.age)
        return {u"%1 ago"_s.arg(ProcessStats{.uptimeSeconds = listed.age->count()}.uptimeText())};
    switch (health.state()) {
    case Health::State::healthy:
        return {u"Online %1 · %2 ms"_s.arg(health.status()).arg(health.ms()), TextStyle::Online};
    case Health::State::unreachable:
        return {u"Offline"_s, TextStyle::Offline};
    case Health::State::checking:
        return {u"Checking"_s, TextStyle::Pending};
    case Health::State::unknown:
        break;
    }
    return {nothing, TextStyle::Faint};
}

Row headerRow()
{
    Row row;
    for (size_t column = 0; column < columnCount; ++column)
        row[column] = {headings[column].toString(), TextStyle::Faint};
    return row;
}

Row rowOf(const ListedService &listed)
{
    const Service &service = listed.service;
    Row row;
    row[Mark] = {listed.isPinned ? u"*"_s : QString(), TextStyle::Accent};
    row[Host] = {TerminalText::harmless(listed.host)};
    row[Port] = {QString::number(service.port)};
    row[Name] = {TerminalText::harmless(service.displayName), TextStyle::Strong};
    row[ServerKind] = {service.framework.rawValue()};
    row[Status] = statusOf(listed);
    row[Uptime] = {service.stats ? service.stats->uptimeText() : nothing};
    row[Cpu] = {service.stats ? service.stats->cpuText() : nothing};
    row[Memory] = {service.stats ? service.stats->memoryText() : nothing};
    row[Pid] = {QString::number(service.pid), TextStyle::Faint};
    row[Folder] = {TerminalText::harmless(service.prettyFolder().value_or(nothing)), TextStyle::Faint};
    if (listed.age) {
        for (StyledText &cell : row)
            cell.style = TextStyle::Faint;
    }
    return row;
}

Widths naturalWidths(const QList<Row> &rows)
{
    Widths widths{};
    for (const Row &row : rows) {
        for (size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], TerminalText::width(row[column].text));
    }
    return widths;
}

int lineWidth(const Widths &widths)
{
    const auto shown = std::ranges::count_if(widths, [](int width) { return width > 0; });
    return std::accumulate(widths.begin(), widths.end(), 0) + gap * int(shown - 1);
}

// Takes up to `excess` columns off `width`, down to `least`.
void shorten(int &width, int excess, int least)
{
    width -= std::clamp(excess, 0, std::max(0, width - least));
}

Widths fittedWidths(Widths widths, int columns)
{
    const auto excess = [&] { return lineWidth(widths) - columns; };
    shorten(widths[Folder], excess(), minFolderWidth);
    shorten(widths[Name], excess(), minNameWidth);
    for (const Column column : optionalColumns) {
        if (excess() > 0)
            widths[column] = 0;
    }
    shorten(widths[Name], excess(), narrowNameWidth);
    shorten(widths[Status], excess(), narrowStatusWidth);
    for (const Column column : lastOptionalColumns) {
        if (excess() > 0)
            widths[column] = 0;
    }
    shorten(widths[Port], excess(), 1);
    return widths;
}

StyledLine line(const Row &row, const Widths &widths)
{
    StyledLine result;
    int padding = 0; // spaces, written only when something follows
    for (size_t column = 0; column < columnCount; ++column) {
        const int width = widths[column];
        if (width == 0)
            continue;
        const auto &[whole, style] = row[column];
        const QString text = column == Folder ? TerminalText::elidedInTheMiddle(whole, width)
                                              : TerminalText::elided(whole, width);
        const int missing = width - TerminalText::width(text);
        const bool isRight = std::ranges::find(rightAlignedColumns, column) != rightAlignedColumns.end();
        if (isRight)
            padding += missing;
        if (!text.isEmpty()) {
            if (padding > 0)
                result.append({QString(padding, u' ')});
            result.append({text, style});
            padding = 0;
        }
        padding += gap + (isRight ? 0 : missing);
    }
    return result;
}

} // namespace

QList<StyledLine> ServiceTable::of(const QList<ListedService> &services, const Layout &layout)
{
    QList<Row> rows{headerRow()};
    for (const ListedService &listed : services)
        rows.append(rowOf(listed));
    Widths widths = naturalWidths(rows);
    widths[Host] = layout.hasHosts ? std::min(widths[Host], maxHostWidth) : 0;
    if (layout.isSteady)
        widths[Status] = std::max(widths[Status], usualStatusWidth);
    if (layout.columns)
        widths = fittedWidths(widths, *layout.columns);

    QList<StyledLine> table;
    for (const Row &row : rows)
        table.append(line(row, widths));
    return table;
}

StyledLine ServiceTable::emptyText(bool isSearching, int columns)
{
    const QString title = isSearching ? u"No matches"_s : u"Nothing running"_s;
    const QString hint = isSearching ? u" · Try a different name or port."_s
                                     : u" · Start a dev server and it appears here automatically."_s;
    const bool fits = title.size() + hint.size() <= columns;
    return {{TerminalText::elided(title, columns), TextStyle::Strong},
            {fits ? hint : QString(), TextStyle::Faint}};
}

} // namespace portolan
