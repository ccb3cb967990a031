// SPDX-License-Identifier: MIT
#include "Framework.h"

#include <algorithm>

namespace portolan {

namespace {

struct Row
{
    Framework::Case value;
    QLatin1StringView rawValue;
    QLatin1StringView symbol;
    SrgbColor accent;
};

using namespace Qt::StringLiterals;

constexpr std::array<Row, Framework::count> table{{
    {Framework::next, "Next.js"_L1, "server.rack"_L1, {229, 229, 229}},
    {Framework::vite, "Vite"_L1, "bolt.fill"_L1, {183, 148, 246}},
    {Framework::react, "React"_L1, "atom"_L1, {97, 218, 251}},
    {Framework::vue, "Vue"_L1, "leaf.fill"_L1, {66, 211, 146}},
    {Framework::svelte, "Svelte"_L1, "flame.fill"_L1, {255, 106, 61}},
    {Framework::nuxt, "Nuxt"_L1, "leaf.fill"_L1, {66, 211, 146}},
    {Framework::astro, "Astro"_L1, "sparkles"_L1, {244, 114, 182}},
    {Framework::remix, "Remix"_L1, "square.stack.3d.up.fill"_L1, {124, 156, 255}},
    {Framework::angular, "Angular"_L1, "shield.lefthalf.filled"_L1, {244, 114, 160}},
    {Framework::node, "Node"_L1, "server.rack"_L1, {108, 194, 74}},
    {Framework::deno, "Deno"_L1, "server.rack"_L1, {212, 212, 212}},
    {Framework::bun, "Bun"_L1, "server.rack"_L1, {240, 220, 184}},
    {Framework::python, "Python"_L1, "chevron.left.forwardslash.chevron.right"_L1, {107, 168, 224}},
    {Framework::django, "Django"_L1, "chevron.left.forwardslash.chevron.right"_L1, {107, 168, 224}},
    {Framework::flask, "Flask"_L1, "chevron.left.forwardslash.chevron.right"_L1, {107, 168, 224}},
    {Framework::fastapi, "FastAPI"_L1, "chevron.left.forwardslash.chevron.right"_L1, {107, 168, 224}},
    {Framework::rails, "Rails"_L1, "tram.fill"_L1, {255, 107, 91}},
    {Framework::go, "Go"_L1, "hare.fill"_L1, {93, 214, 201}},
    {Framework::rust, "Rust"_L1, "gearshape.2.fill"_L1, {245, 158, 11}},
    {Framework::php, "PHP"_L1, "curlybraces"_L1, {154, 160, 218}},
    {Framework::java, "Java"_L1, "cup.and.saucer.fill"_L1, {235, 144, 112}},
    {Framework::dotnet, ".NET"_L1, "square.grid.2x2.fill"_L1, {167, 139, 250}},
    {Framework::docker, "Docker"_L1, "shippingbox.fill"_L1, {74, 168, 240}},
    {Framework::generic, "Server"_L1, "globe"_L1, {156, 163, 175}},
}};

constexpr bool tableIsInCaseOrder()
{
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].value != i)
            return false;
    }
    return true;
}
static_assert(tableIsInCaseOrder(), "a case is looked up by its position");

} // namespace

std::optional<Framework> Framework::fromRawValue(QStringView rawValue)
{
    const auto row =
        std::ranges::find_if(table, [=](const Row &candidate) { return candidate.rawValue == rawValue; });
    return row == table.end() ? std::nullopt : std::optional<Framework>(row->value);
}

std::array<Framework, Framework::count> Framework::allCases()
{
    std::array<Framework, count> cases;
    std::ranges::transform(table, cases.begin(), &Row::value);
    return cases;
}

QString Framework::rawValue() const
{
    return table[m_case].rawValue;
}

QString Framework::symbol() const
{
    return table[m_case].symbol;
}

SrgbColor Framework::accent() const
{
    return table[m_case].accent;
}

} // namespace portolan
