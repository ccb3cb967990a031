// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "StoreFixture.h"

#include <QJsonArray>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace portolan {

using namespace Qt::StringLiterals;

// The state, the settings and the change signals. tst_RefreshCycle.cpp tests the refresh cycle.
class ServiceStoreTest : public StoreFixture
{};

TEST_F(ServiceStoreTest, StartsEmptyAndWritesNothing)
{
    makeStore(std::chrono::milliseconds(1));
    EXPECT_TRUE(m_store->services().isEmpty());
    EXPECT_TRUE(m_store->visible().isEmpty());
    EXPECT_EQ(m_store->runningCount(), 0);
    EXPECT_FALSE(m_store->isScanning());
    EXPECT_FALSE(m_store->lastUpdated().isValid());
    EXPECT_EQ(m_store->searchText(), QString());
    EXPECT_EQ(m_store->sortOrder(), SortOrder::port);
    EXPECT_TRUE(m_store->pinnedPorts().isEmpty());
    EXPECT_TRUE(m_store->autoRefresh());

    QTest::qWait(50);
    EXPECT_EQ(m_scanner.begun(), 0);
    EXPECT_FALSE(QFile::exists(settingsPath()));
}

struct StoredSettings
{
    const char *name;
    QByteArray json;
    SortOrder sortOrder = SortOrder::port;
    QSet<qint64> pinnedPorts;
    bool autoRefresh = true;
    bool startsLoop = false;
};

class ServiceStoreLoading : public ServiceStoreTest, public testing::WithParamInterface<StoredSettings>
{};

TEST_P(ServiceStoreLoading, TakesWhatIsUsable)
{
    writeSettings(GetParam().json);
    makeStore(std::chrono::milliseconds(1));
    EXPECT_EQ(m_store->sortOrder(), GetParam().sortOrder);
    EXPECT_EQ(m_store->pinnedPorts(), GetParam().pinnedPorts);
    EXPECT_EQ(m_store->autoRefresh(), GetParam().autoRefresh);
    if (GetParam().startsLoop) {
        EXPECT_TRUE(eventually([this] { return m_scanner.begun() > 0; }));
    } else {
        QTest::qWait(50);
        EXPECT_EQ(m_scanner.begun(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, ServiceStoreLoading,
    testing::Values(
        StoredSettings{"nothing", "{}"}, StoredSettings{"broken", "{"},
        StoredSettings{"port", R"({"sortOrder": "port"})"},
        StoredSettings{"name", R"({"sortOrder": "name"})", SortOrder::name},
        StoredSettings{"status", R"({"sortOrder": "status"})", SortOrder::status},
        StoredSettings{"uptime", R"({"sortOrder": "uptime"})", SortOrder::uptime},
        StoredSettings{"capitalised", R"({"sortOrder": "Uptime"})"},
        StoredSettings{"unknownOrder", R"({"sortOrder": "size"})"},
        StoredSettings{"orderOfWrongType", R"({"sortOrder": 1})"},
        StoredSettings{"pins", R"({"pinnedPorts": [3000, 5173]})", SortOrder::port, {3000, 5173}},
        StoredSettings{"noPins", R"({"pinnedPorts": []})"},
        StoredSettings{"pinsTwice", R"({"pinnedPorts": [3000, 3000, 5173]})", SortOrder::port, {3000, 5173}},
        StoredSettings{"pinOfWrongType", R"({"pinnedPorts": [3000, "x"]})"},
        StoredSettings{"fractionalPin", R"({"pinnedPorts": [3000, 1.5]})"},
        StoredSettings{"pinsOfWrongType", R"({"pinnedPorts": "3000"})"},
        StoredSettings{"autoRefreshOn", R"({"autoRefresh": true})", SortOrder::port, {}, true, true},
        StoredSettings{"autoRefreshOff", R"({"autoRefresh": false})", SortOrder::port, {}, false},
        StoredSettings{"autoRefreshOfWrongType", R"({"autoRefresh": "false"})"},
        StoredSettings{"onlyTheBadOneIsIgnored",
                       R"({"sortOrder": 1, "pinnedPorts": [1], "autoRefresh": false})",
                       SortOrder::port,
                       {1},
                       false}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(ServiceStoreTest, WritesBackWhatItCouldUseAndLeavesTheRest)
{
    writeSettings(
        R"({"sortOrder": "Uptime", "pinnedPorts": [3000, 3000, 5173], "autoRefresh": "yes", "other": 1})");
    makeStore();
    const QJsonObject stored = settings();
    EXPECT_EQ(stored.value(u"sortOrder"_s), u"Uptime"_s);
    EXPECT_EQ(stored.value(u"autoRefresh"_s), u"yes"_s);
    EXPECT_EQ(stored.value(u"other"_s), 1);
    EXPECT_EQ(stored.value(u"pinnedPorts"_s).toArray().size(), 2);
}

TEST_F(ServiceStoreTest, SettingsAreStoredWhenTheyChangeAndReadByTheNextStore)
{
    makeStore();
    m_store->setSortOrder(SortOrder::status);
    m_store->togglePin(service(1, 3000));
    m_store->setAutoRefresh(false);
    m_store->setSearchText(u"shop"_s);
    const QJsonObject expected{
        {u"sortOrder"_s, u"status"_s}, {u"pinnedPorts"_s, QJsonArray{3000}}, {u"autoRefresh"_s, false}};
    EXPECT_EQ(settings(), expected);

    makeStore();
    EXPECT_EQ(m_store->sortOrder(), SortOrder::status);
    EXPECT_EQ(m_store->pinnedPorts(), QSet<qint64>{3000});
    EXPECT_FALSE(m_store->autoRefresh());
    EXPECT_EQ(m_store->searchText(), QString());
}

TEST_F(ServiceStoreTest, AnEqualAssignmentIsSilentButStored)
{
    makeStore();
    m_store->setSortOrder(SortOrder::name);
    m_store->setAutoRefresh(false);
    ASSERT_TRUE(QFile::remove(settingsPath()));
    const QSignalSpy sortOrder(m_store.get(), &ServiceStore::sortOrderChanged);
    const QSignalSpy autoRefresh(m_store.get(), &ServiceStore::autoRefreshChanged);

    m_store->setSortOrder(SortOrder::name);
    EXPECT_EQ(settings(), QJsonObject({{u"sortOrder"_s, u"name"_s}}));
    m_store->setAutoRefresh(false);
    EXPECT_EQ(settings(), QJsonObject({{u"sortOrder"_s, u"name"_s}, {u"autoRefresh"_s, false}}));
    EXPECT_EQ(sortOrder.count(), 0);
    EXPECT_EQ(autoRefresh.count(), 0);

    m_store->setSortOrder(SortOrder::port);
    EXPECT_EQ(sortOrder.count(), 1);
}

TEST_F(ServiceStoreTest, TheSameSearchTextIsSilent)
{
    makeStore();
    const QSignalSpy searchText(m_store.get(), &ServiceStore::searchTextChanged);
    const QSignalSpy visible(m_store.get(), &ServiceStore::visibleChanged);
    m_store->setSearchText(u"shop"_s);
    m_store->setSearchText(u"shop"_s);
    EXPECT_EQ(searchText.count(), 1);
    EXPECT_EQ(visible.count(), 1);
}

TEST_F(ServiceStoreTest, TogglingAPinTwiceAnnouncesAndStoresTwice)
{
    makeStore();
    const QSignalSpy pinnedPorts(m_store.get(), &ServiceStore::pinnedPortsChanged);
    m_store->togglePin(service(1, 3000));
    EXPECT_EQ(m_store->pinnedPorts(), QSet<qint64>{3000});
    EXPECT_EQ(settings().value(u"pinnedPorts"_s), QJsonArray{3000});
    m_store->togglePin(service(2, 3000));
    EXPECT_EQ(m_store->pinnedPorts(), QSet<qint64>());
    EXPECT_EQ(settings().value(u"pinnedPorts"_s), QJsonArray());
    EXPECT_EQ(pinnedPorts.count(), 2);
}

TEST_F(ServiceStoreTest, RemovingAServiceTakesEveryRecordOfItAndNothingElse)
{
    makeStore();
    m_store->togglePin(service(1, 3000));
    scan({service(1, 3000), service(2, 3000), service(1, 3000), service(1, 4000)});
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    m_store->removeService(service(1, 3000, Health::unreachable()));
    EXPECT_EQ(m_store->services(), QList({service(2, 3000), service(1, 4000)}));
    EXPECT_EQ(services.count(), 1);
    EXPECT_EQ(m_store->pinnedPorts(), QSet<qint64>{3000});
}

TEST_F(ServiceStoreTest, RemovingAServiceThatIsGoneIsAnnouncedAllTheSame)
{
    makeStore();
    scan({service(1, 3000)});
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    const QSignalSpy visible(m_store.get(), &ServiceStore::visibleChanged);
    m_store->removeService(service(7, 3000));
    EXPECT_EQ(m_store->services().size(), 1);
    EXPECT_EQ(services.count(), 1);
    EXPECT_EQ(visible.count(), 1);
}

TEST_F(ServiceStoreTest, RunningCountIsThatOfAllHealthyServices)
{
    makeStore();
    scan({service(1, 1), service(2, 2), service(3, 3)});
    m_checker.answer(0, Health::healthy(500, 1));
    m_checker.answer(1, Health::unreachable());
    m_checker.answer(2, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 2; }));
    m_store->setSearchText(u"nothing like this"_s);
    EXPECT_TRUE(m_store->visible().isEmpty());
    EXPECT_EQ(m_store->runningCount(), 2);
}

TEST_F(ServiceStoreTest, ServicesAreAnnouncedWhenTheyChange)
{
    makeStore();
    const QSignalSpy services(m_store.get(), &ServiceStore::servicesChanged);
    m_store->setSearchText(u"x"_s);
    m_store->setSortOrder(SortOrder::name);
    m_store->togglePin(service(1, 1));
    EXPECT_EQ(services.count(), 0);
    scan({service(1, 1)});
    EXPECT_EQ(services.count(), 1);
    EXPECT_EQ(m_store->services().size(), 1);
    m_checker.answer(0, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    EXPECT_EQ(services.count(), 2);
    scan({service(1, 1)});
    EXPECT_EQ(services.count(), 2);
    m_store->removeService(service(1, 1));
    EXPECT_EQ(services.count(), 3);
    EXPECT_EQ(m_store->services().size(), 0);
}

TEST_F(ServiceStoreTest, VisibleIsAnnouncedWhenAnythingThatDecidesItChanges)
{
    makeStore();
    scan({service(1, 10), service(2, 20)});
    const QSignalSpy visible(m_store.get(), &ServiceStore::visibleChanged);
    const auto first = [this] { return m_store->visible().value(0).port; };
    EXPECT_EQ(first(), 10);
    m_store->togglePin(service(2, 20));
    EXPECT_EQ(visible.count(), 1);
    EXPECT_EQ(first(), 20);
    m_store->setSortOrder(SortOrder::name);
    EXPECT_EQ(visible.count(), 2);
    m_store->setSortOrder(SortOrder::name);
    EXPECT_EQ(visible.count(), 2);
    m_store->setSearchText(u"10"_s);
    EXPECT_EQ(visible.count(), 3);
    EXPECT_EQ(first(), 10);
    m_store->removeService(service(1, 10));
    EXPECT_EQ(visible.count(), 4);
    EXPECT_EQ(first(), 0);
    m_store->setAutoRefresh(false);
    EXPECT_EQ(visible.count(), 4);
}

TEST_F(ServiceStoreTest, VisibleIsNotAnnouncedForPinsAndOrderWhereThereIsNothingToOrder)
{
    makeStore();
    scan({service(1, 10), service(2, 20)});
    m_store->setSearchText(u"20"_s);
    const QSignalSpy visible(m_store.get(), &ServiceStore::visibleChanged);
    m_store->togglePin(service(2, 20));
    m_store->setSortOrder(SortOrder::uptime);
    EXPECT_EQ(visible.count(), 0);
    m_store->setSearchText({});
    EXPECT_EQ(visible.count(), 1);
    m_store->setSortOrder(SortOrder::port);
    EXPECT_EQ(visible.count(), 2);
}

TEST_F(ServiceStoreTest, RunningCountIsAnnouncedForTheServicesAlone)
{
    makeStore();
    scan({service(1, 10), service(2, 20)});
    const QSignalSpy runningCount(m_store.get(), &ServiceStore::runningCountChanged);
    m_store->setSearchText(u"20"_s);
    m_store->togglePin(service(2, 20));
    EXPECT_EQ(runningCount.count(), 0);
    m_checker.answer(1, Health::healthy(404, 1));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    EXPECT_EQ(runningCount.count(), 1);
}

TEST_F(ServiceStoreTest, AScanIsAnnouncedFromBeginningToEnd)
{
    makeStore();
    QStringList seen;
    QObject::connect(m_store.get(), &ServiceStore::lastUpdatedChanged, m_store.get(),
                     [&] { seen.append(u"updated"_s); });
    QObject::connect(m_store.get(), &ServiceStore::isScanningChanged, m_store.get(),
                     [&] { seen.append(m_store->isScanning() ? u"busy"_s : u"idle"_s); });
    scan({});
    EXPECT_THAT(seen, testing::ElementsAre(u"busy"_s, u"updated"_s, u"idle"_s));
}

TEST_F(ServiceStoreTest, DerivedPropertiesAreFreshInsideEveryNotification)
{
    makeStore();
    QList<qsizetype> seen;
    QObject::connect(m_store.get(), &ServiceStore::servicesChanged, m_store.get(),
                     [&] { seen.append(m_store->visible().size()); });
    scan({service(1, 10), service(2, 20)});
    m_store->removeService(service(1, 10));
    EXPECT_EQ(seen, (QList<qsizetype>{2, 1}));
}

TEST_F(ServiceStoreTest, ServiceCountIsAPropertyOfItsOwn)
{
    makeStore();
    QSignalSpy changes(m_store.get(), &ServiceStore::servicesChanged);
    const QMetaProperty count =
        m_store->metaObject()->property(m_store->metaObject()->indexOfProperty("serviceCount"));
    EXPECT_EQ(count.read(m_store.get()), 0);
    EXPECT_EQ(count.notifySignal(), QMetaMethod::fromSignal(&ServiceStore::servicesChanged));
    scan({service(1, 10), service(2, 20)});
    EXPECT_EQ(count.read(m_store.get()), 2);
    EXPECT_GE(changes.count(), 1);
}

TEST_F(ServiceStoreTest, AnOrderCanBeChosenByItsRawValue)
{
    makeStore();
    EXPECT_EQ(m_store->sortOrderId(), u"port"_s);
    m_store->setProperty("sortOrderId", u"uptime"_s);
    EXPECT_EQ(m_store->sortOrder(), SortOrder::uptime);
    m_store->setProperty("sortOrderId", u"Uptime"_s);
    EXPECT_EQ(m_store->sortOrder(), SortOrder::uptime);
    EXPECT_EQ(settings().value(u"sortOrder"_s), u"uptime"_s);
    ASSERT_EQ(ServiceStore::sortOrders().size(), 4);
    EXPECT_EQ(ServiceStore::sortOrders().first(), SortOrder::port);
}

TEST_F(ServiceStoreTest, ReadOnlySettingsAreUsedAndNeverWritten)
{
    writeSettings(R"({"sortOrder": "name"})");
    UserDefaults defaults(settingsPath(), UserDefaults::Access::ReadOnly);
    ServiceStore store(defaults, m_scanner.function(), m_checker.function());
    EXPECT_EQ(store.sortOrder(), SortOrder::name);
    store.setSortOrder(SortOrder::uptime);
    store.togglePin(service(1, 3000));
    EXPECT_EQ(settings(), QJsonObject({{u"sortOrder"_s, u"name"_s}}));
}

} // namespace portolan
