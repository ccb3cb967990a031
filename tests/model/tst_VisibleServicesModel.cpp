// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "StoreFixture.h"
#include "VisibleServicesModel.h"

#include <QAbstractItemModelTester>
#include <QEventLoop>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// The rows of a view that only follows the model's signals, with what changed in each.
class ShadowList : public QObject
{
public:
    struct Row
    {
        Service service;
        bool isPinned;
        friend bool operator==(const Row &, const Row &) = default;
    };

    explicit ShadowList(const VisibleServicesModel &model)
        : m_model(model)
    {
        insert(0, model.count() - 1);
        connect(&model, &QAbstractItemModel::modelReset, this, [this] { ++m_resets; });
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) { insert(first, last); });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { remove(first, last); });
        connect(&model, &QAbstractItemModel::rowsMoved, this,
                [this](const QModelIndex &, int first, int last, const QModelIndex &, int to) {
                    move(first, last, to);
                });
        connect(&model, &QAbstractItemModel::dataChanged, this, &ShadowList::change);
    }

    const QList<Row> &rows() const { return m_rows; }
    int resets() const { return m_resets; }
    /// Everything that was signalled since the last call.
    QStringList takeLog() { return std::exchange(m_log, {}); }

private:
    Row read(int row) const
    {
        const QModelIndex index = m_model.index(row);
        return {index.data(VisibleServicesModel::ServiceRole).value<Service>(),
                index.data(VisibleServicesModel::IsPinnedRole).toBool()};
    }

    void insert(int first, int last)
    {
        for (int row = first; row <= last; ++row)
            m_rows.insert(row, read(row));
        m_log.append(u"insert %1-%2"_s.arg(first).arg(last));
    }

    void remove(int first, int last)
    {
        m_rows.remove(first, last - first + 1);
        m_log.append(u"remove %1-%2"_s.arg(first).arg(last));
    }

    void move(int first, int last, int to)
    {
        const auto begin = m_rows.begin();
        if (to < first)
            std::rotate(begin + to, begin + first, begin + last + 1);
        else
            std::rotate(begin + first, begin + last + 1, begin + to);
        m_log.append(u"move %1-%2 to %3"_s.arg(first).arg(last).arg(to));
    }

    void change(const QModelIndex &first, const QModelIndex &last, const QList<int> &roles)
    {
        EXPECT_FALSE(roles.isEmpty());
        for (int row = first.row(); row <= last.row(); ++row) {
            if (roles.contains(VisibleServicesModel::ServiceRole))
                m_rows[row].service = read(row).service;
            if (roles.contains(VisibleServicesModel::IsPinnedRole))
                m_rows[row].isPinned = read(row).isPinned;
        }
        QStringList names;
        for (const int role : roles)
            names.append(QString::fromLatin1(m_model.roleNames().value(role)));
        m_log.append(u"change %1-%2 %3"_s.arg(first.row()).arg(last.row()).arg(names.join(u',')));
    }

    const VisibleServicesModel &m_model;
    QList<Row> m_rows;
    QStringList m_log;
    int m_resets = 0;
};

} // namespace

class VisibleServicesModelTest : public StoreFixture
{
protected:
    void SetUp() override
    {
        makeStore();
        m_model.setStore(m_store.get());
        m_shadow.takeLog();
    }

    /// Scans, lets the rows follow, and returns the signals emitted meanwhile.
    QStringList signalsOfScan(const QList<Service> &services)
    {
        scan(services);
        return signalsNow();
    }

    QStringList signalsNow()
    {
        settle();
        expectRowsAreVisible();
        return m_shadow.takeLog();
    }

    void expectRowsAreVisible()
    {
        const QList<Service> visible = m_store->visible();
        ASSERT_EQ(m_shadow.rows().size(), visible.size());
        ASSERT_EQ(m_model.count(), visible.size());
        for (int row = 0; row < visible.size(); ++row) {
            ASSERT_EQ(m_shadow.rows().at(row).service, visible.at(row)) << row;
            ASSERT_EQ(m_shadow.rows().at(row).isPinned, m_store->pinnedPorts().contains(visible.at(row).port))
                << row;
        }
        ASSERT_EQ(m_shadow.resets(), 0);
    }

    VisibleServicesModel m_model;
    QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    ShadowList m_shadow{m_model};
};

TEST_F(VisibleServicesModelTest, NamesItsRoles)
{
    EXPECT_THAT(m_model.roleNames().values(), testing::UnorderedElementsAre("service", "isPinned"));
}

TEST_F(VisibleServicesModelTest, RowsComeAndGoInPlace)
{
    EXPECT_THAT(signalsOfScan({service(1, 10), service(2, 20), service(3, 30)}),
                testing::ElementsAre(u"insert 0-2"_s));
    EXPECT_THAT(signalsOfScan({service(1, 10), service(2, 20), service(3, 30)}), testing::IsEmpty());
    EXPECT_THAT(signalsOfScan({service(1, 10), service(4, 20), service(3, 30)}),
                testing::ElementsAre(u"remove 1-1"_s, u"insert 1-1"_s));
    m_store->removeService(service(1, 10));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"remove 0-0"_s));
    EXPECT_THAT(signalsOfScan({}), testing::ElementsAre(u"remove 0-1"_s));
}

TEST_F(VisibleServicesModelTest, ALaterProcessWithTheSamePidAndPortIsAnotherRow)
{
    m_store->refresh();
    m_scanner.finish({service(1, 10), service(2, 20)}, {{1, {1, 111}}, {2, {2, 222}}});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    signalsNow();
    m_store->refresh();
    m_scanner.finish({service(1, 10), service(2, 20)}, {{1, {1, 112}}, {2, {2, 222}}});
    ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"remove 0-0"_s, u"insert 0-0"_s));
}

TEST_F(VisibleServicesModelTest, OnlyChangedRolesAreTold)
{
    signalsOfScan({service(1, 10), service(2, 20), service(3, 30)});
    m_checker.answer(1, Health::healthy(200, 5));
    ASSERT_TRUE(eventually([this] { return m_store->runningCount() == 1; }));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"change 1-1 service"_s));
    m_store->togglePin(service(1, 10));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"change 0-0 isPinned"_s));
}

TEST_F(VisibleServicesModelTest, APinMovesItsRow)
{
    signalsOfScan({service(1, 10), service(2, 20), service(3, 30)});
    m_store->togglePin(service(3, 30));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"move 2-2 to 0"_s, u"change 0-0 isPinned"_s));
    m_store->togglePin(service(3, 30));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"move 0-0 to 3"_s, u"change 2-2 isPinned"_s));
}

TEST_F(VisibleServicesModelTest, APinIsShownWhereThereIsNothingToOrder)
{
    signalsOfScan({service(1, 10)});
    m_store->togglePin(service(1, 10));
    EXPECT_THAT(signalsNow(), testing::ElementsAre(u"change 0-0 isPinned"_s));
}

TEST_F(VisibleServicesModelTest, ManyChangesInOneTurnAreOneStep)
{
    signalsOfScan({service(1, 10), service(2, 20)});
    m_store->setSearchText(u"nothing like this"_s);
    m_store->setSearchText({});
    m_store->setSortOrder(SortOrder::uptime);
    m_store->togglePin(service(1, 10));
    m_store->togglePin(service(1, 10));
    EXPECT_THAT(signalsNow(), testing::IsEmpty());
}

TEST_F(VisibleServicesModelTest, ServicesWithTheSameIdAreRowsOfTheirOwn)
{
    Service first = service(1, 10);
    Service second = first;
    second.displayName = u"second"_s;
    signalsOfScan({first, second, service(2, 20)});
    EXPECT_EQ(m_model.count(), 3);
    EXPECT_THAT(signalsOfScan({first, second, service(2, 20)}), testing::IsEmpty());
    EXPECT_THAT(signalsOfScan({first, second, second, service(2, 20)}),
                testing::ElementsAre(u"insert 2-2"_s));
    EXPECT_THAT(signalsOfScan({first, service(2, 20)}), testing::ElementsAre(u"remove 1-2"_s));
}

TEST_F(VisibleServicesModelTest, CountIsToldWhenItChanges)
{
    const QSignalSpy countChanged(&m_model, &VisibleServicesModel::countChanged);
    signalsOfScan({service(1, 10), service(2, 20)});
    EXPECT_EQ(countChanged.count(), 1);
    signalsOfScan({service(3, 10), service(2, 20)});
    EXPECT_EQ(countChanged.count(), 1);
}

TEST_F(VisibleServicesModelTest, AChangeMadeByAnObserverOfARowIsFollowed)
{
    bool done = false;
    QObject::connect(&m_model, &QAbstractItemModel::rowsInserted, &m_model, [&] {
        if (!std::exchange(done, true))
            m_store->removeService(service(2, 20));
    });
    signalsOfScan({service(1, 10), service(2, 20), service(3, 30)});
    EXPECT_TRUE(done);
    EXPECT_EQ(m_model.count(), 2);
}

TEST_F(VisibleServicesModelTest, AnEventLoopRunByAnObserverOfARowIsHarmless)
{
    signalsOfScan({service(1, 10), service(2, 20), service(3, 30)});
    bool done = false;
    QObject::connect(&m_model, &QAbstractItemModel::rowsRemoved, &m_model, [&] {
        if (std::exchange(done, true))
            return;
        m_store->togglePin(service(4, 40));
        settle();
        m_store->setSearchText(u"4"_s);
        settle();
    });
    signalsOfScan({service(1, 10), service(4, 40), service(5, 45)});
    EXPECT_TRUE(done);
    EXPECT_EQ(m_model.count(), 2);
}

TEST_F(VisibleServicesModelTest, FollowsAnotherStoreAndSurvivesItsEnd)
{
    signalsOfScan({service(1, 10), service(2, 20)});
    {
        ServiceStore other(*m_defaults, m_scanner.function(), m_checker.function());
        m_model.setStore(&other);
        EXPECT_EQ(m_model.count(), 0);
        m_model.setStore(m_store.get());
        EXPECT_EQ(m_model.count(), 2);
    }
    EXPECT_THAT(m_shadow.takeLog(), testing::ElementsAre(u"remove 0-1"_s, u"insert 0-1"_s));
    m_store.reset();
    EXPECT_EQ(m_model.store(), nullptr);
    EXPECT_EQ(m_model.count(), 0);
}

TEST_F(VisibleServicesModelTest, FollowsRandomChanges)
{
    std::mt19937 random(11);
    const auto upTo = [&random](int limit) { return int(random() % unsigned(limit)); };
    const auto randomService = [&] {
        Service made = service(upTo(4), upTo(12));
        made.displayName = QString(QChar(u'a' + upTo(5)));
        made.stats = ProcessStats{upTo(5), 0, 0};
        return made;
    };
    const QString searches[] = {{}, u"1"_s, u"a"_s, u"b"_s, u"nothing"_s};
    for (int round = 0; round < 400; ++round) {
        for (int change = upTo(3); change >= 0; --change) {
            switch (upTo(5)) {
            case 0:
                m_store->togglePin(randomService());
                break;
            case 1:
                m_store->setSortOrder(SortOrder::allCases()[size_t(upTo(4))]);
                break;
            case 2:
                m_store->setSearchText(searches[upTo(5)]);
                break;
            case 3:
                m_store->removeService(randomService());
                break;
            default: {
                QList<Service> found(upTo(15));
                std::ranges::generate(found, randomService);
                const size_t probed = m_checker.ports().size();
                scan(found);
                for (size_t probe = probed; probe < m_checker.ports().size(); ++probe)
                    m_checker.answer(probe, upTo(2) ? Health::healthy(200, upTo(3)) : Health::unreachable());
            }
            }
        }
        signalsNow();
        ASSERT_FALSE(HasFailure()) << round;
    }
}

} // namespace portolan
