// SPDX-License-Identifier: MIT
#include "HomeFolder.h"
#include "Printers.h"
#include "Service.h"

#include <gtest/gtest.h>

#include <functional>

namespace portolan {

using namespace Qt::StringLiterals;

static Service shop()
{
    return {.pid = 4242,
            .port = 3000,
            .command = u"node"_s,
            .folderPath = u"/srv/shop"_s,
            .displayName = u"Shop"_s,
            .framework = Framework::next,
            .health = Health::healthy(200, 12),
            .stats = ProcessStats{90, 1.5, 87.4}};
}

TEST(Service, IdIsPidAndPort)
{
    EXPECT_EQ(shop().id(), u"4242-3000"_s);
    EXPECT_EQ((Service{.pid = 7, .port = 80}.id()), u"7-80"_s);
    EXPECT_EQ((Service{.pid = -7, .port = -80}.id()), u"-7--80"_s);
}

TEST(Service, UrlIsLocalhostAndPortWithNothingBehind)
{
    EXPECT_EQ((Service{.port = 5173}.url()), u"http://localhost:5173"_s);
    EXPECT_EQ((Service{.pid = 7, .port = 80}.url()), u"http://localhost:80"_s);
    EXPECT_EQ((Service{.port = 70000}.url()), u"http://localhost:70000"_s);
    EXPECT_EQ((Service{.port = -5}.url()), u"http://localhost:-5"_s);
}

TEST(Service, PrettyFolderIsAbsentExactlyWithoutAFolder)
{
    Service service = shop();
    EXPECT_EQ(service.prettyFolder(), u"/srv/shop"_s);
    service.folderPath = HomeFolder::path() + u"/dev/shop"_s;
    EXPECT_EQ(service.prettyFolder(), u"~/dev/shop"_s);
    service.folderPath = QString();
    EXPECT_EQ(service.prettyFolder(), QString());
    service.folderPath.reset();
    EXPECT_EQ(service.prettyFolder(), std::nullopt);
}

TEST(Service, ServicesThatDifferOnlyInHealthAreUnequalWithTheSameId)
{
    Service other = shop();
    other.health = Health::unreachable();
    EXPECT_FALSE(other == shop());
    EXPECT_EQ(other.id(), shop().id());
}

struct FieldChange
{
    const char *field;
    std::function<void(Service &)> change;
};

class ServiceEquality : public testing::TestWithParam<FieldChange>
{};

TEST_P(ServiceEquality, CountsTheField)
{
    Service changed = shop();
    GetParam().change(changed);
    EXPECT_FALSE(changed == shop());
    EXPECT_NE(qHash(changed), qHash(shop()));
    changed = shop();
    EXPECT_EQ(changed, shop());
    EXPECT_EQ(qHash(changed), qHash(shop()));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, ServiceEquality,
    testing::Values(FieldChange{"pid", [](Service &s) { s.pid = 1; }},
                    FieldChange{"port", [](Service &s) { s.port = 1; }},
                    FieldChange{"command", [](Service &s) { s.command = u"deno"_s; }},
                    FieldChange{"folderPath", [](Service &s) { s.folderPath = u"/srv"_s; }},
                    FieldChange{"noFolder", [](Service &s) { s.folderPath.reset(); }},
                    FieldChange{"displayName", [](Service &s) { s.displayName = u"shop"_s; }},
                    FieldChange{"framework", [](Service &s) { s.framework = Framework::node; }},
                    FieldChange{"status", [](Service &s) { s.health = Health::healthy(404, 12); }},
                    FieldChange{"ms", [](Service &s) { s.health = Health::healthy(200, 13); }},
                    FieldChange{"health", [](Service &s) { s.health = Health::unknown(); }},
                    FieldChange{"stats", [](Service &s) { s.stats->cpuPercent = 2; }},
                    FieldChange{"noStats", [](Service &s) { s.stats.reset(); }}),
    [](const auto &row) { return std::string(row.param.field); });

TEST(Health, StatesAreEqualOnlyToThemselves)
{
    const Health values[] = {Health::unknown(),       Health::checking(),      Health::healthy(200, 3),
                             Health::healthy(200, 4), Health::healthy(404, 3), Health::unreachable()};
    for (size_t i = 0; i < std::size(values); ++i) {
        for (size_t j = 0; j < std::size(values); ++j)
            EXPECT_EQ(values[i] == values[j], i == j) << i << ' ' << j;
    }
}

TEST(Health, OnlyAResponseIsHealthyWhateverItsStatus)
{
    EXPECT_TRUE(Health::healthy(500, 0).isHealthy());
    EXPECT_FALSE(Health::unknown().isHealthy());
    EXPECT_FALSE(Health::checking().isHealthy());
    EXPECT_FALSE(Health::unreachable().isHealthy());
    EXPECT_EQ(Health(), Health::unknown());
}

} // namespace portolan
