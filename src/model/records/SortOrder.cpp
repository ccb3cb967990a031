// SPDX-License-Identifier: MIT
#include "SortOrder.h"

#include <algorithm>

namespace portolan {

namespace {

struct Row
{
    SortOrder::Case value;
    QLatin1StringView rawValue;
    QLatin1StringView label;
};

using namespace Qt::StringLiterals;

constexpr std::array<Row, SortOrder::count> table{{
    {SortOrder::port, "port"_L1, "Port"_L1},
    {SortOrder::name, "name"_L1, "Name"_L1},
    {SortOrder::status, "status"_L1, "Status"_L1},
    {SortOrder::uptime, "uptime"_L1, "Uptime"_L1},
}};

} // namespace

std::optional<SortOrder> SortOrder::fromRawValue(QStringView rawValue)
{
    const auto row =
        std::ranges::find_if(table, [=](const Row &candidate) { return candidate.rawValue == rawValue; });
    return row == table.end() ? std::nullopt : std::optional<SortOrder>(row->value);
}

std::array<SortOrder, SortOrder::count> SortOrder::allCases()
{
    std::array<SortOrder, count> cases;
    std::ranges::transform(table, cases.begin(), &Row::value);
    return cases;
}

QString SortOrder::rawValue() const
{
    return table[m_case].rawValue;
}

QString SortOrder::label() const
{
    return table[m_case].label;
}

} // namespace portolan
