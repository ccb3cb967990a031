// SPDX-License-Identifier: MIT
#include "ServiceOperand.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;
using Meaning = ServiceOperand::Meaning;

TEST(ServiceOperand, IsAPort)
{
    EXPECT_EQ(ServiceOperand::parse(u"3000"), (ServiceOperand{.port = 3000}));
    EXPECT_EQ(ServiceOperand::parse(u"1"), (ServiceOperand{.port = 1}));
    EXPECT_EQ(ServiceOperand::parse(u"65535"), (ServiceOperand{.port = 65535}));
}

TEST(ServiceOperand, IsAnId)
{
    EXPECT_EQ(ServiceOperand::parse(u"4242-3000"), (ServiceOperand{.port = 3000, .pid = 4242}));
    EXPECT_EQ(ServiceOperand::parse(u"2147483647-80"), (ServiceOperand{.port = 80, .pid = 2147483647}));
}

TEST(ServiceOperand, IsNothingElse)
{
    for (const auto *text :
         {u"", u"-", u"0", u"65536", u"-3000", u"3000-", u"0-3000", u"4242-0", u"4242-65536",
          u"2147483648-80", u"99999999999999999999", u"1-2-3", u"4242--3000"})
        EXPECT_EQ(ServiceOperand::parse(text), std::nullopt) << QString::fromUtf16(text).toStdString();
}

TEST(ServiceOperand, IsAName)
{
    for (const auto *text : {u"shop", u"a", u"My Shop", u"+80", u" 80", u"0x50", u":3000", u"٣", u"shop-2"})
        EXPECT_EQ(ServiceOperand::parse(text), (ServiceOperand{.name = QString::fromUtf16(text)}));
}

namespace {

ListedService called(const QString &name, qint32 pid, const QString &host = {})
{
    return {.service = {.pid = pid, .port = 3000 + pid, .displayName = name}, .host = host};
}

QList<qint32> pidsOf(const QList<ListedService> &services)
{
    QList<qint32> pids;
    for (const ListedService &listed : services)
        pids.append(listed.service.pid);
    return pids;
}

const QList<ListedService> shops{called(u"shop-front"_s, 1), called(u"Shop-Back"_s, 2),
                                 called(u"shop"_s, 3, u"web1"_s), called(u"wiki"_s, 4)};

} // namespace

TEST(ServiceOperand, MeansServersByPortOrById)
{
    const auto in = [](const ServiceOperand &operand) {
        return pidsOf(ServiceOperand::choose({operand}, shops, Meaning::oneServer).services);
    };
    EXPECT_EQ(in({.port = 3001}), QList<qint32>{1});
    EXPECT_EQ(in({.port = 3001, .pid = 1}), QList<qint32>{1});
    EXPECT_EQ(in({.port = 3001, .pid = 2}), QList<qint32>());
    EXPECT_EQ(in({.port = 3002, .pid = 1}), QList<qint32>());
    EXPECT_EQ(in({.port = 1}), QList<qint32>());
}

TEST(ServiceOperand, MeansServersByNameOrItsStart)
{
    const auto in = [](const QString &name) {
        return pidsOf(ServiceOperand::choose({{.name = name}}, shops, Meaning::oneServer).services);
    };
    EXPECT_EQ(in(u"shop-front"_s), QList<qint32>{1});
    EXPECT_EQ(in(u"SHOP-BACK"_s), QList<qint32>{2});
    EXPECT_EQ(in(u"shop"_s), QList<qint32>{3}) << "a whole name before the start of others";
    EXPECT_EQ(in(u"wi"_s), QList<qint32>{4});
    EXPECT_EQ(in(u"iki"_s), QList<qint32>());
}

TEST(ServiceOperand, IsAmbiguousAsTheStartOfSeveralNames)
{
    for (const Meaning meaning : {Meaning::oneServer, Meaning::severalServers}) {
        const auto choice =
            ServiceOperand::choose({{.name = u"shop-"_s}, {.name = u"wiki"_s}}, shops, meaning);
        EXPECT_TRUE(choice.isAmbiguous);
        EXPECT_EQ(choice.problems.size(), 1);
        EXPECT_EQ(pidsOf(choice.services), QList<qint32>{4});
    }
}

TEST(ServiceOperand, MayMeanSeveralServersOfOneNameOrPort)
{
    ListedService namesake = called(u"Wiki"_s, 5);
    namesake.service.port = 3001;
    const QList<ListedService> services = shops + QList{namesake};
    for (const ServiceOperand &operand : {ServiceOperand{.name = u"wiki"_s}, ServiceOperand{.port = 3001}}) {
        const auto several = ServiceOperand::choose({operand}, services, Meaning::severalServers);
        EXPECT_FALSE(several.isAmbiguous);
        EXPECT_EQ(several.services.size(), 2);
        const auto one = ServiceOperand::choose({operand}, services, Meaning::oneServer);
        EXPECT_TRUE(one.isAmbiguous);
        EXPECT_EQ(one.services.size(), 0);
    }
}

TEST(ServiceOperand, ChoosesEachServerOnceInTheOrderOfTheList)
{
    const auto choice = ServiceOperand::choose(
        {{.name = u"wiki"_s}, {.port = 3001}, {.port = 3001, .pid = 1}}, shops, Meaning::oneServer);
    EXPECT_EQ(pidsOf(choice.services), (QList<qint32>{1, 4}));
    EXPECT_EQ(choice.problems, QStringList());
}

TEST(ServiceOperand, SaysWhatIsWrongWithIt)
{
    const auto problemsOf = [](const ServiceOperand &operand) {
        return ServiceOperand::choose({operand}, shops, Meaning::oneServer).problems;
    };
    EXPECT_EQ(problemsOf({.name = u"sho"_s}),
              QStringList{u"3 servers match 'sho', name one by its id:\n  1-3001  shop-front\n"
                          "  2-3002  Shop-Back\n  web1  3-3003  shop"_s});
    EXPECT_EQ(problemsOf({.name = u"sho\x1b"_s}), QStringList{u"no server is called 'sho␛'"_s});
    EXPECT_EQ(problemsOf({.port = 1}), QStringList{u"no server on port 1"_s});
    EXPECT_EQ(problemsOf({.port = 3001, .pid = 2}), QStringList{u"no server has the id 2-3001"_s});
}

} // namespace portolan
