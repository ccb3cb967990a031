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

struct ColumnStyle
{
    QLatin1StringView header;
    Qt::AlignmentFlag alignment;
    TextStyle style;
};

constexpr std::array<ColumnStyle, columnCount> styles{{
    {""_L1, Qt::AlignLeft, TextStyle::Accent},
    {"HOST"_L1, Qt::AlignLeft, TextStyle::Plain},
    {"PORT"_L1, Qt::AlignRight, TextStyle::Plain},
    {"NAME"_L1, Qt::AlignLeft, TextStyle::Strong},
    {"FRAMEWORK"_L1, Qt::AlignLeft, TextStyle::Plain},
    {"STATUS"_L1, Qt::AlignLeft, TextStyle::Plain},
    {"UPTIME"_L1, Qt::AlignRight, TextStyle::Plain},
    {"CPU"_L1, Qt::AlignRight, TextStyle::Plain},
    {"MEMORY"_L1, Qt::AlignRight, TextStyle::Plain},
    {"PID"_L1, Qt::AlignRight, TextStyle::Faint},
    {"FOLDER"_L1, Qt::AlignLeft, TextStyle::Faint},
}};

// The columns left out where there is not enough room, in this order, and the widths that long texts are cut
// to before that.
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
constexpr QStringView nothing = u"—";
constexpr QStringView pinMark = u"*";

using Row = std::array<QString, columnCount>;
using Widths = std::array<int, columnCount>; // 0: not shown

QString statusText(const ListedService &listed)
{
    const Health &health = listed.service.health;
    if (!listed.note.isEmpty())
        return TerminalText::harmless(listed.note);
    if (listed.age)
        return u"%1 ago"_s.arg(ProcessStats{.uptimeSeconds = listed.age->count()}.uptimeText());
    switch (health.state()) {
    case Health::State::healthy:
        return u"Online %1 · %2 ms"_s.arg(health.status()).arg(health.ms());
    case Health::State::unreachable:
        return u"Offline"_s;
    case Health::State::checking:
        return u"Checking"_s;
    case Health::State::unknown:
        break;
    }
    return nothing.toString();
}

TextStyle statusStyle(const ListedService &listed)
{
    if (!listed.note.isEmpty())
        return TextStyle::Pending;
    switch (listed.service.health.state()) {
    case Health::State::healthy:
        return TextStyle::Online;
    case Health::State::unreachable:
        return TextStyle::Offline;
    case Health::State::checking:
        return TextStyle::Pending;
    case Health::State::unknown:
        break;
    }
    return TextStyle::Faint;
}

Row rowOf(const ListedService &listed)
{
    const Service &service = listed.service;
    Row row;
    row[Mark] = listed.isPinned ? pinMark.toString() : QString();
    row[Host] = TerminalText::harmless(listed.host);
    row[Port] = QString::number(service.port);
    row[Name] = TerminalText::harmless(service.displayName);
    row[ServerKind] = service.framework.rawValue();
    row[Status] = statusText(listed);
    row[Uptime] = service.stats ? service.stats->uptimeText() : nothing.toString();
    row[Cpu] = service.stats ? service.stats->cpuText() : nothing.toString();
    row[Memory] = service.stats ? service.stats->memoryText() : nothing.toString();
    row[Pid] = QString::number(service.pid);
    row[Folder] = TerminalText::harmless(service.prettyFolder().value_or(nothing.toString()));
    return row;
}

Widths naturalWidths(const QList<Row> &rows)
{
    Widths widths;
    for (size_t column = 0; column < columnCount; ++column) {
        widths[column] = int(styles[column].header.size());
        for (const Row &row : rows)
            widths[column] = std::max(widths[column], TerminalText::width(row[column]));
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

QString fitted(size_t column, const QString &text, int width)
{
    return column == Folder ? TerminalText::elidedInTheMiddle(text, width)
                            : TerminalText::elided(text, width);
}

template <typename StyleOf>
StyledLine line(const Row &row, const Widths &widths, StyleOf styleOf)
{
    StyledLine result;
    int padding = 0; // spaces, written only when something follows
    for (size_t column = 0; column < columnCount; ++column) {
        const int width = widths[column];
        if (width == 0)
            continue;
        const QString text = fitted(column, row[column], width);
        const int missing = width - TerminalText::width(text);
        if (styles[column].alignment == Qt::AlignRight)
            padding += missing;
        if (!text.isEmpty()) {
            if (padding > 0)
                result.append({QString(padding, u' ')});
            result.append({text, styleOf(column)});
            padding = 0;
        }
        padding += gap + (styles[column].alignment == Qt::AlignRight ? 0 : missing);
    }
    return result;
}

} // namespace

QList<StyledLine> ServiceTable::of(const QList<ListedService> &services, const Layout &layout)
{
    QList<Row> rows;
    for (const ListedService &listed : services)
        rows.append(rowOf(listed));
    Widths widths = naturalWidths(rows);
    widths[Host] = layout.hasHosts ? std::min(widths[Host], maxHostWidth) : 0;
    if (layout.isSteady)
        widths[Status] = std::max(widths[Status], usualStatusWidth);
    if (layout.columns)
        widths = fittedWidths(widths, *layout.columns);

    Row header;
    std::ranges::transform(styles, header.begin(), &ColumnStyle::header);
    QList<StyledLine> table{line(header, widths, [](size_t) { return TextStyle::Faint; })};
    for (qsizetype i = 0; i < rows.size(); ++i) {
        table.append(line(rows[i], widths, [&](size_t column) {
            return services[i].age    ? TextStyle::Faint
                   : column == Status ? statusStyle(services[i])
                                      : styles[column].style;
        }));
    }
    return table;
}

StyledLine ServiceTable::emptyText(bool isSearching, std::optional<int> columns)
{
    const QString title = isSearching ? u"No matches"_s : u"Nothing running"_s;
    const QString hint = isSearching ? u" · Try a different name or port."_s
                                     : u" · Start a dev server and it appears here automatically."_s;
    const bool fits = !columns || title.size() + hint.size() <= *columns;
    return {{columns ? TerminalText::elided(title, *columns) : title, TextStyle::Strong},
            {fits ? hint : QString(), TextStyle::Faint}};
}

} // namespace portolan
