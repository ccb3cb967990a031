// SPDX-License-Identifier: MIT
#include "Framework.h"
#include "Printers.h"

#include <QMetaEnum>

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

struct FrameworkRow
{
    Framework framework;
    QString rawValue;
    QString symbol;
    SrgbColor accent;
};

static const FrameworkRow rows[] = {
    {Framework::next, u"Next.js"_s, u"server.rack"_s, {229, 229, 229}},
    {Framework::vite, u"Vite"_s, u"bolt.fill"_s, {183, 148, 246}},
    {Framework::react, u"React"_s, u"atom"_s, {97, 218, 251}},
    {Framework::vue, u"Vue"_s, u"leaf.fill"_s, {66, 211, 146}},
    {Framework::svelte, u"Svelte"_s, u"flame.fill"_s, {255, 106, 61}},
    {Framework::nuxt, u"Nuxt"_s, u"leaf.fill"_s, {66, 211, 146}},
    {Framework::astro, u"Astro"_s, u"sparkles"_s, {244, 114, 182}},
    {Framework::remix, u"Remix"_s, u"square.stack.3d.up.fill"_s, {124, 156, 255}},
    {Framework::angular, u"Angular"_s, u"shield.lefthalf.filled"_s, {244, 114, 160}},
    {Framework::node, u"Node"_s, u"server.rack"_s, {108, 194, 74}},
    {Framework::deno, u"Deno"_s, u"server.rack"_s, {212, 212, 212}},
    {Framework::bun, u"Bun"_s, u"server.rack"_s, {240, 220, 184}},
    {Framework::python, u"Python"_s, u"chevron.left.forwardslash.chevron.right"_s, {107, 168, 224}},
    {Framework::django, u"Django"_s, u"chevron.left.forwardslash.chevron.right"_s, {107, 168, 224}},
    {Framework::flask, u"Flask"_s, u"chevron.left.forwardslash.chevron.right"_s, {107, 168, 224}},
    {Framework::fastapi, u"FastAPI"_s, u"chevron.left.forwardslash.chevron.right"_s, {107, 168, 224}},
    {Framework::rails, u"Rails"_s, u"tram.fill"_s, {255, 107, 91}},
    {Framework::go, u"Go"_s, u"hare.fill"_s, {93, 214, 201}},
    {Framework::rust, u"Rust"_s, u"gearshape.2.fill"_s, {245, 158, 11}},
    {Framework::php, u"PHP"_s, u"curlybraces"_s, {154, 160, 218}},
    {Framework::java, u"Java"_s, u"cup.and.saucer.fill"_s, {235, 144, 112}},
    {Framework::dotnet, u".NET"_s, u"square.grid.2x2.fill"_s, {167, 139, 250}},
    {Framework::docker, u"Docker"_s, u"shippingbox.fill"_s, {74, 168, 240}},
    {Framework::generic, u"Server"_s, u"globe"_s, {156, 163, 175}},
};

class FrameworkTable : public testing::TestWithParam<FrameworkRow>
{};

TEST_P(FrameworkTable, HasItsNameSymbolAndColour)
{
    const FrameworkRow &row = GetParam();
    EXPECT_EQ(row.framework.rawValue(), row.rawValue);
    EXPECT_EQ(row.framework.symbol(), row.symbol);
    EXPECT_EQ(row.framework.accent(), row.accent);
    EXPECT_EQ(Framework::fromRawValue(row.rawValue), row.framework);
}

INSTANTIATE_TEST_SUITE_P(All, FrameworkTable, testing::ValuesIn(rows), [](const auto &row) {
    return std::string(QMetaEnum::fromType<Framework::Case>().valueToKey(row.param.framework));
});

TEST(Framework, CasesStandInDeclarationOrder)
{
    const auto cases = Framework::allCases();
    ASSERT_EQ(cases.size(), std::size(rows));
    for (size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(cases[i], rows[i].framework) << i;
}

TEST(Framework, RawValuesAreDisplayNamesAndCaseSensitive)
{
    EXPECT_EQ(Framework::fromRawValue(u"next"), std::nullopt);
    EXPECT_EQ(Framework::fromRawValue(u"NEXT.JS"), std::nullopt);
    EXPECT_EQ(Framework::fromRawValue(u"Generic"), std::nullopt);
    EXPECT_EQ(Framework::fromRawValue(u""), std::nullopt);
}

TEST(Framework, DefaultsToGeneric)
{
    EXPECT_EQ(Framework(), Framework::generic);
}

TEST(Framework, EqualCasesHashAlike)
{
    EXPECT_EQ(qHash(Framework(Framework::vue)), qHash(Framework(Framework::vue)));
    EXPECT_NE(qHash(Framework(Framework::vue)), qHash(Framework(Framework::nuxt)));
}

} // namespace portolan
