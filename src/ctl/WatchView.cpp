// SPDX-License-Identifier: MIT
#include "WatchView.h"

#include "ServiceTable.h"
#include "TerminalText.h"

#include <algorithm>
#include <array>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype wheelRows = 3;
constexpr QStringView refreshing = u"Refreshing…";

// The help; its lines fit into a small terminal.
const std::array keyLines{
    u"↑ ↓ j k       choose; also Page Up, Page Down, Home, End, a click"_s,
    u"Enter o       open in the browser"_s,
    u"c             copy the URL"_s,
    u"s, then y     stop"_s,
    u"/             search; Escape clears"_s,
    u"O             next sort order"_s,
    u"r             refresh"_s,
    u"?             these keys"_s,
    u"q             quit"_s,
};

// The keys named in the last line, in this order; the most important ones if there is not enough space.
struct Hint
{
    QStringView text;
    int rank;
};
constexpr std::array keyHints{
    Hint{u"Enter open", 4}, Hint{u"c copy", 6}, Hint{u"s stop", 2}, Hint{u"/ search", 3},
    Hint{u"O order", 5},    Hint{u"? keys", 1}, Hint{u"q quit", 0},
};

QString othersText(qsizetype above, qsizetype below)
{
    if (below == 0)
        return u"… %1 above"_s.arg(above);
    return above == 0 ? u"… %1 more"_s.arg(below) : u"… %1 above, %2 more"_s.arg(above).arg(below);
}

/// The key hints that fit into `columns`.
QString hints(qsizetype columns)
{
    for (qsizetype count = keyHints.size(); count > 0; --count) {
        QString text;
        for (const Hint &hint : keyHints) {
            if (hint.rank < count)
                text += u" · "_s + hint.text.toString();
        }
        if (text.size() <= columns)
            return text;
    }
    return {};
}

} // namespace

WatchView::WatchView(const QString &searchText, SortOrder order, bool readsKeys)
    : m_searchText(searchText)
    , m_order(order)
    , m_readsKeys(readsKeys)
{}

void WatchView::setContent(const Content &content)
{
    m_content = content;
    arrange();
}

void WatchView::endRefresh()
{
    if (m_message == refreshing)
        m_message.clear();
}

void WatchView::setSize(Output::Size size)
{
    m_size = size;
    select(m_selected);
}

void WatchView::setNote(const ListedService &service, const QString &note)
{
    if (note.isEmpty()) {
        m_noted.remove(service.key());
    } else {
        ListedService &noted = m_noted[service.key()] = service;
        noted.note = note;
    }
    arrange();
}

// Rebuilds the rows. The selected server stays selected wherever its row moves; if it is gone, the one that
// takes its place is selected.
void WatchView::arrange()
{
    const QString chosen = m_rows.isEmpty() ? QString() : m_rows[m_selected].key();
    QHash<QString, ListedService> noted = m_noted;
    QList<ListedService> all = m_content.services;
    for (ListedService &listed : all) {
        if (const auto found = noted.constFind(listed.key()); found != noted.cend()) {
            listed.note = found->note;
            noted.erase(found);
        }
    }
    m_rows = ListedService::visible(all + noted.values(), m_searchText, m_order);
    const auto row = std::ranges::find(m_rows, chosen, &ListedService::key);
    select(row == m_rows.end() ? m_selected : row - m_rows.begin());
}

WatchView::Request WatchView::handle(const Input &input)
{
    m_message.clear();
    switch (m_mode) {
    case Mode::List:
        return handleInList(input);
    case Mode::Search:
        handleInSearch(input);
        return {};
    case Mode::Stop:
        m_mode = Mode::List;
        if (input.character == u'y')
            return {Request::Stop, m_toStop};
        return {};
    case Mode::Keys:
        m_mode = Mode::List;
        return {input.character == u'q' ? Request::Quit : Request::None, {}};
    }
    Q_UNREACHABLE();
}

WatchView::Request WatchView::handleInList(const Input &input)
{
    if (input.kind == Input::Click && input.row >= 1 && input.row <= std::min(m_rows.size(), shownAtOnce()))
        select(m_first + input.row - 1);
    if (input.kind == Input::Escape) {
        m_searchText.clear();
        arrange();
    }
    if (moveSelection(input.kind))
        return {};
    const auto request = [&](Request::Kind kind) {
        return m_rows.isEmpty() ? Request() : Request{kind, m_rows[m_selected]};
    };
    switch (input.kind == Input::Enter ? U'o' : input.character) {
    case U'j':
        (void)moveSelection(Input::Down);
        return {};
    case U'k':
        (void)moveSelection(Input::Up);
        return {};
    case U'o':
        return request(Request::Open);
    case U'c':
        return request(Request::Copy);
    case U's':
        if (!m_rows.isEmpty()) {
            m_toStop = m_rows[m_selected];
            m_mode = Mode::Stop;
        }
        return {};
    case U'/':
        m_mode = Mode::Search;
        return {};
    case U'O':
        m_order = SortOrder::Case((m_order + 1) % SortOrder::count);
        m_message = u"Sorted by "_s + m_order.rawValue();
        arrange();
        return {};
    case U'r':
        m_message = refreshing.toString();
        return {Request::Refresh, {}};
    case U'?':
        m_mode = Mode::Keys;
        return {};
    case U'q':
    case U'Q':
        return {Request::Quit, {}};
    default:
        return {};
    }
}

void WatchView::handleInSearch(const Input &input)
{
    if (input.kind == Input::Text && input.character >= U' ')
        m_searchText += QChar::fromUcs4(input.character);
    else if (input.kind == Input::Backspace)
        m_searchText.chop(!m_searchText.isEmpty() && m_searchText.back().isLowSurrogate() ? 2 : 1);
    else if (input.kind == Input::Escape)
        m_searchText.clear();
    else if (moveSelection(input.kind))
        return;
    if (input.kind == Input::Escape || input.kind == Input::Enter)
        m_mode = Mode::List;
    arrange();
}

bool WatchView::moveSelection(Input::Kind kind)
{
    switch (kind) {
    case Input::Up:
        select(m_selected - 1);
        return true;
    case Input::Down:
        select(m_selected + 1);
        return true;
    case Input::PageUp:
        select(m_selected - shownAtOnce());
        return true;
    case Input::PageDown:
        select(m_selected + shownAtOnce());
        return true;
    case Input::Home:
        select(0);
        return true;
    case Input::End:
        select(m_rows.size() - 1);
        return true;
    case Input::WheelUp:
        scroll(-wheelRows);
        return true;
    case Input::WheelDown:
        scroll(wheelRows);
        return true;
    default:
        return false;
    }
}

// Selects the row nearest to `row` and scrolls it into view.
void WatchView::select(qsizetype row)
{
    m_selected = m_rows.isEmpty() ? 0 : std::clamp<qsizetype>(row, 0, m_rows.size() - 1);
    m_first = std::clamp(m_first, m_selected - shownAtOnce() + 1, m_selected);
    m_first = std::clamp<qsizetype>(m_first, 0, std::max<qsizetype>(0, m_rows.size() - shownAtOnce()));
}

void WatchView::scroll(qsizetype rows)
{
    if (m_rows.size() <= shownAtOnce())
        return;
    m_first = std::clamp<qsizetype>(m_first + rows, 0, m_rows.size() - shownAtOnce());
    select(std::clamp(m_selected, m_first, m_first + shownAtOnce() - 1));
}

/// The number of lines for the list, above an empty line, the problems and the last line.
qsizetype WatchView::listHeight() const
{
    return std::max<qsizetype>(0, m_size.rows - (m_size.rows > 2 ? 2 : 1) - m_content.problems.size());
}

/// How many servers fit, at least 1: below the header and, if not all fit, above the line about the others.
qsizetype WatchView::shownAtOnce() const
{
    const qsizetype room = listHeight() - 1;
    return std::max<qsizetype>(1, m_rows.size() > room ? room - 1 : room);
}

QList<StyledLine> WatchView::listLines() const
{
    const auto faint = [this](const QString &text) {
        return StyledLine{{TerminalText::elided(text, m_size.columns), TextStyle::Faint}};
    };
    QList<StyledLine> lines;
    if (m_mode == Mode::Keys) {
        for (const QString &line : keyLines)
            lines.append({{TerminalText::elided(line, m_size.columns)}});
        return lines.first(std::min(lines.size(), qsizetype(m_size.rows - 1)));
    }
    if (m_content.lastUpdated.isValid()) {
        if (m_rows.isEmpty()) {
            lines = {ServiceTable::emptyText(!m_content.services.isEmpty(), m_size.columns)};
        } else {
            lines = ServiceTable::of(
                m_rows, {.columns = m_size.columns, .isSteady = true, .hasHosts = m_content.hasHosts});
        }
        const qsizetype below = m_rows.size() - m_first - shownAtOnce();
        if (m_first > 0 || below > 0) {
            lines = lines.first(1) + lines.mid(1 + m_first, shownAtOnce());
            lines.append(faint(othersText(m_first, below)));
        }
        lines = lines.first(std::min(lines.size(), listHeight()));
        if (m_size.rows > 2)
            lines.append(StyledLine());
    }
    for (const QString &problem : m_content.problems)
        lines.append(faint(problem));
    return lines.last(std::min(lines.size(), qsizetype(m_size.rows - 1)));
}

QString WatchView::footer() const
{
    if (m_mode == Mode::Stop)
        return u"y: stop %1 · other keys: no"_s.arg(m_toStop.description());
    if (m_mode == Mode::Search)
        return u"/"_s + TerminalText::harmless(m_searchText) + u"_ · Enter: done · Escape: clear"_s;
    if (m_mode == Mode::Keys)
        return u"Any key: back to the list"_s;
    if (!m_message.isEmpty())
        return TerminalText::harmless(m_message);
    QString text = m_content.lastUpdated.isValid()
                       ? u"Updated "_s + m_content.lastUpdated.toLocalTime().toString(u"HH:mm:ss"_s)
                       : u"Looking for servers…"_s;
    if (!m_searchText.isEmpty())
        text += u" · /"_s + TerminalText::harmless(m_searchText);
    if (!m_readsKeys)
        return text + u" · Control-C to quit"_s;
    return text + hints(m_size.columns - TerminalText::width(text));
}

WatchView::Frame WatchView::frame() const
{
    Frame frame{.lines = listLines()};
    frame.lines.append(StyledLine{{TerminalText::elided(footer(), m_size.columns), TextStyle::Faint}});
    if (m_mode != Mode::Keys && !m_rows.isEmpty() && m_readsKeys && listHeight() > 1)
        frame.highlighted = 1 + m_selected - m_first;
    return frame;
}

} // namespace portolan
