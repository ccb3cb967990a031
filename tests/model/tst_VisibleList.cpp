// SPDX-License-Identifier: MIT
#include "HomeFolder.h"
#include "Printers.h"
#include "VisibleList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

Service service(qint64 port, const QString &name = {})
{
    return {.pid = qint32(port), .port = port, .command = u"hidden"_s, .displayName = name};
}

QList<qint64> portsOf(const QList<Service> &services)
{
    QList<qint64> ports;
    for (const Service &shown : services)
        ports.append(shown.port);
    return ports;
}

QList<qint64> found(const QList<Service> &services, const QString &searchText)
{
    return portsOf(VisibleList::of(services, {.searchText = searchText}));
}

QList<qint64> sorted(const QList<Service> &services, SortOrder order, const QSet<qint64> &pins = {})
{
    return portsOf(VisibleList::of(services, {.pinnedPorts = pins, .sortOrder = order}));
}

} // namespace

struct Search
{
    const char *name;
    QString text;
    bool finds;
};

class VisibleListSearch : public testing::TestWithParam<Search>
{};

TEST_P(VisibleListSearch, LooksAtNamePortFolderAndFramework)
{
    Service shop = service(3000, u"Shop Ärger"_s);
    shop.pid = 4242;
    shop.folderPath = HomeFolder::path() + u"/Dev/shop"_s;
    shop.framework = Framework::next;
    EXPECT_EQ(!found({shop}, GetParam().text).isEmpty(), GetParam().finds);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, VisibleListSearch,
    testing::Values(Search{"empty", u""_s, true}, Search{"blank", u"   "_s, true},
                    Search{"tab", u"\t"_s, true}, Search{"noBreakSpace", u"\u00a0shop\u3000"_s, true},
                    Search{"name", u"shop"_s, true}, Search{"nameInCapitals", u"SHOP"_s, true},
                    Search{"innerSpaceStays", u"shop  ä"_s, false}, Search{"innerSpace", u" shop ä "_s, true},
                    Search{"umlautInCapitals", u"ÄRGER"_s, true},
                    Search{"noAccentFolding", u"arger"_s, false},
                    Search{"lineBreakStays", u"shop\n"_s, false}, Search{"lineBreak", u"\n"_s, false},
                    Search{"zeroWidthSpaceStays", u"\u200b"_s, false}, Search{"port", u"300"_s, true},
                    Search{"portEnd", u"00"_s, true}, Search{"pid", u"4242"_s, false},
                    Search{"folder", u"~/dev"_s, true}, Search{"framework", u"NEXT"_s, true},
                    Search{"frameworkDot", u".js"_s, true}, Search{"command", u"hidden"_s, false},
                    Search{"health", u"healthy"_s, false}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(VisibleList, TheHomeFoldersOwnPathFindsNothing)
{
    Service shop = service(3000, u"Shop"_s);
    shop.folderPath = HomeFolder::path() + u"/shop"_s;
    EXPECT_TRUE(found({shop}, HomeFolder::path()).isEmpty());
    EXPECT_FALSE(found({shop}, u"~/sh"_s).isEmpty());
}

TEST(VisibleList, FindsPartsOfPortsAndTheGenericFrameworksName)
{
    const QList<Service> services = {service(3000), service(3001), service(4000), service(8300)};
    EXPECT_EQ(found(services, u"300"_s), (QList<qint64>{3000, 3001, 8300}));
    EXPECT_EQ(found(services, u"server"_s), (QList<qint64>{3000, 3001, 4000, 8300}));
}

TEST(VisibleList, SortsByPort)
{
    EXPECT_EQ(sorted({service(5173), service(3000), service(4000)}, SortOrder::port),
              (QList<qint64>{3000, 4000, 5173}));
}

TEST(VisibleList, PinsGoFirstInEveryOrder)
{
    const QList<Service> services = {service(3000, u"a"_s), service(4000, u"c"_s), service(5173, u"b"_s)};
    EXPECT_EQ(sorted(services, SortOrder::port, {5173, 4000, 9999}), (QList<qint64>{4000, 5173, 3000}));
    EXPECT_EQ(sorted(services, SortOrder::name, {5173, 4000}), (QList<qint64>{5173, 4000, 3000}));
    EXPECT_EQ(sorted(services, SortOrder::status, {4000}), (QList<qint64>{4000, 3000, 5173}));
    EXPECT_EQ(sorted(services, SortOrder::uptime, {5173}), (QList<qint64>{5173, 3000, 4000}));
}

TEST(VisibleList, NamesDifferingInCaseKeepTheirOrder)
{
    EXPECT_EQ(sorted({service(1, u"api"_s), service(2, u"API"_s), service(3, u"Api"_s)}, SortOrder::name),
              (QList<qint64>{1, 2, 3}));
    EXPECT_EQ(sorted({service(3, u"Zoo"_s), service(2, u"API"_s), service(1, u"api"_s), service(4)},
                     SortOrder::name),
              (QList<qint64>{4, 2, 1, 3}));
}

TEST(VisibleList, NamesSortByTheUsersLocale)
{
    const QList<Service> services = {service(1, u"zebra"_s), service(2, u"Ärger"_s), service(3, u"apfel"_s)};
    const auto sortedIn = [&services](const QString &locale) {
        QCollator collator{QLocale(locale)};
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        return portsOf(VisibleList::of(services, {.sortOrder = SortOrder::name}, collator));
    };
    EXPECT_EQ(sortedIn(u"de_DE"_s), (QList<qint64>{3, 2, 1}));
    EXPECT_EQ(sortedIn(u"sv_SE"_s), (QList<qint64>{3, 1, 2}));
}

TEST(VisibleList, HealthyServicesGoFirstByStatusWhateverTheirCode)
{
    QList<Service> services = {service(1), service(2), service(3), service(4), service(5)};
    services[1].health = Health::unreachable();
    services[2].health = Health::healthy(500, 1);
    services[3].health = Health::checking();
    services[4].health = Health::healthy(200, 1);
    EXPECT_EQ(sorted(services, SortOrder::status), (QList<qint64>{3, 5, 1, 2, 4}));
}

TEST(VisibleList, TheLongestRunningGoFirstByUptime)
{
    QList<Service> services = {service(1), service(2), service(3), service(4), service(5)};
    services[1].stats = ProcessStats{10, 0, 0};
    services[2].stats = ProcessStats{0, 0, 0};
    services[3].stats = ProcessStats{20, 0, 0};
    services[4].stats = ProcessStats{-3, 0, 0};
    EXPECT_EQ(sorted(services, SortOrder::uptime), (QList<qint64>{4, 2, 1, 3, 5}));
}

TEST(VisibleList, HasAnOrderFromTwoServicesOn)
{
    const QList<Service> services = {service(1, u"one"_s), service(2, u"two"_s)};
    EXPECT_FALSE(VisibleList::hasOrder({}, {}));
    EXPECT_TRUE(VisibleList::hasOrder(services, {}));
    EXPECT_FALSE(VisibleList::hasOrder(services, u"one"_s));
}

} // namespace portolan
