// SPDX-License-Identifier: MIT
#include "ServiceOperand.h"

#include "Printers.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

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
    const auto in = [](const ServiceOperand &operand) { return pidsOf(operand.in(shops)); };
    EXPECT_EQ(in({.port = 3001}), QList<qint32>{1});
    EXPECT_EQ(in({.port = 3001, .pid = 1}), QList<qint32>{1});
    EXPECT_EQ(in({.port = 3001, .pid = 2}), QList<qint32>());
    EXPECT_EQ(in({.port = 3002, .pid = 1}), QList<qint32>());
    EXPECT_EQ(in({.port = 1}), QList<qint32>());
}

TEST(ServiceOperand, MeansServersByNameOrItsStart)
{
    const auto in = [](const QString &name) { return pidsOf(ServiceOperand{.name = name}.in(shops)); };
    EXPECT_EQ(in(u"shop-front"_s), QList<qint32>{1});
    EXPECT_EQ(in(u"SHOP-BACK"_s), QList<qint32>{2});
    EXPECT_EQ(in(u"shop"_s), QList<qint32>{3}) << "a whole name before the start of others";
    EXPECT_EQ(in(u"shop-"_s), (QList<qint32>{1, 2}));
    EXPECT_EQ(in(u"wi"_s), QList<qint32>{4});
    EXPECT_EQ(in(u"iki"_s), QList<qint32>());
}

TEST(ServiceOperand, IsAmbiguousAsTheStartOfSeveralNames)
{
    const auto isAmbiguous = [](const QString &name, const QList<ListedService> &services) {
        const ServiceOperand operand{.name = name};
        return operand.isAmbiguous(operand.in(services));
    };
    EXPECT_TRUE(isAmbiguous(u"sho"_s, shops));
    EXPECT_FALSE(isAmbiguous(u"shop"_s, shops));
    EXPECT_FALSE(isAmbiguous(u"wik"_s, shops));
    EXPECT_FALSE(isAmbiguous(u"wiki"_s, shops + shops)) << "several of one name can be listed";
}

TEST(ServiceOperand, ListsTheCandidates)
{
    const ServiceOperand operand{.name = u"sho\x1b"_s};
    EXPECT_EQ(operand.severalText(shops.first(3)),
              u"3 servers are called 'sho␛', name one by its id:\n  1-3001  shop-front\n"
              "  2-3002  Shop-Back\n  web1  3-3003  shop"_s);
    EXPECT_EQ(operand.noneText(), u"no server is called 'sho␛'"_s);
}

} // namespace portolan
