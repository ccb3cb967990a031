#include "ServiceTable.h"

#include "TerminalText.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

enum Column : quint8 { Mark, Port, Name, ServerKind, Status, Uptime, Cpu, Memory, Pid, Folder };
constexpr size_t columnCount = Folder + 1;

struct ColumnStyle
{
    QLatin1StringView header;
    Qt::AlignmentFlag alignment;
    Tone tone;
};

constexpr std::array<ColumnStyle, columnCount> styles{{
    {""_L1, Qt::AlignLeft, Tone::accent},
    {"PORT"_L1, Qt::AlignRight, Tone::plain},
    {"NAME"_L1, Qt::AlignLeft, Tone::strong},
    {"FRAMEWORK"_L1, Qt::AlignLeft, Tone::plain},
    {"STATUS"_L1, Qt::AlignLeft, Tone::plain},
    {"UPTIME"_L1, Qt::AlignRight, Tone::plain},
    {"CPU"_L1, Qt::AlignRight, Tone::plain},
    {"MEMORY"_L1, Qt::AlignRight, Tone::plain},
    {"PID"_L1, Qt::AlignRight, Tone::faint},
    {"FOLDER"_L1, Qt::AlignLeft, Tone::faint},
}};

// What goes first where there is not enough room, and what the long texts are never cut below before that.
constexpr std::array dispensable{Pid, Memory, Cpu, Folder, Uptime, ServerKind};
constexpr int shortestName = 12;
constexpr int shortestFolder = 16;
// The same for terminals that hardly have room for anything. The port goes last.
constexpr std::array lastDispensable{Mark, Name, Status};
constexpr int stillAName = 6;
constexpr int stillAStatus = 7; // "Offline"

constexpr int usualStatus = 18; // "Online 200 · 12 ms"

constexpr int gap = 2;
constexpr QStringView nothing = u"—";
constexpr QStringView pinMark = u"*";

using Row = std::array<QString, columnCount>;
using Widths = std::array<int, columnCount>; // 0: not shown

QString statusText(const Health &health)
{
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

Tone statusTone(const Health &health)
{
    switch (health.state()) {
    case Health::State::healthy:
        return Tone::online;
    case Health::State::unreachable:
        return Tone::offline;
    case Health::State::checking:
        return Tone::pending;
    case Health::State::unknown:
        break;
    }
    return Tone::faint;
}

Row rowOf(const Service &service, bool isPinned)
{
    Row row;
    row[Mark] = isPinned ? pinMark.toString() : QString();
    row[Port] = QString::number(service.port);
    row[Name] = TerminalText::harmless(service.displayName);
    row[ServerKind] = service.framework.rawValue();
    row[Status] = statusText(service.health);
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
    shorten(widths[Folder], excess(), shortestFolder);
    shorten(widths[Name], excess(), shortestName);
    for (const Column column : dispensable) {
        if (excess() > 0)
            widths[column] = 0;
    }
    shorten(widths[Name], excess(), stillAName);
    shorten(widths[Status], excess(), stillAStatus);
    for (const Column column : lastDispensable) {
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

template <typename ToneOf>
QString line(const Row &row, const Widths &widths, const Ink &ink, ToneOf toneOf)
{
    QString result;
    int owed = 0; // space that is only written when something follows
    for (size_t column = 0; column < columnCount; ++column) {
        const int width = widths[column];
        if (width == 0)
            continue;
        const QString text = fitted(column, row[column], width);
        const int missing = width - TerminalText::width(text);
        if (styles[column].alignment == Qt::AlignRight)
            owed += missing;
        if (!text.isEmpty()) {
            result += QString(owed, u' ') + ink(toneOf(column), text);
            owed = 0;
        }
        owed += gap + (styles[column].alignment == Qt::AlignRight ? 0 : missing);
    }
    return result + u'\n';
}

} // namespace

QString ServiceTable::of(const QList<Service> &services, const QSet<qint64> &pinnedPorts, const Look &look)
{
    QList<Row> rows;
    for (const Service &service : services)
        rows.append(rowOf(service, pinnedPorts.contains(service.port)));
    Widths widths = naturalWidths(rows);
    if (look.isSteady)
        widths[Status] = std::max(widths[Status], usualStatus);
    if (look.columns)
        widths = fittedWidths(widths, *look.columns);

    Row header;
    std::ranges::transform(styles, header.begin(), &ColumnStyle::header);
    QString table = line(header, widths, look.ink, [](size_t) { return Tone::faint; });
    for (qsizetype i = 0; i < rows.size(); ++i) {
        table += line(rows[i], widths, look.ink, [&](size_t column) {
            return column == Status ? statusTone(services[i].health) : styles[column].tone;
        });
    }
    return table;
}

} // namespace portolan
