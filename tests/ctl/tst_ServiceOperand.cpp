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
    for (const auto *text : {u"",
                             u"-",
                             u"0",
                             u"65536",
                             u"-3000",
                             u"3000-",
                             u"0-3000",
                             u"4242-0",
                             u"4242-65536",
                             u"2147483648-80",
                             u"99999999999999999999",
                             u"1-2-3",
                             u"+80",
                             u" 80",
                             u"80 ",
                             u"0x50",
                             u"8e1",
                             u"shop",
                             u":3000",
                             u"٣",
                             u"4242--3000"})
        EXPECT_EQ(ServiceOperand::parse(text), std::nullopt) << QString::fromUtf16(text).toStdString();
}

TEST(ServiceOperand, MeansServersByPortOrById)
{
    Service service;
    service.pid = 4242;
    service.port = 3000;
    EXPECT_TRUE(ServiceOperand{.port = 3000}.means(service));
    EXPECT_FALSE(ServiceOperand{.port = 3001}.means(service));
    EXPECT_TRUE((ServiceOperand{.port = 3000, .pid = 4242}.means(service)));
    EXPECT_FALSE((ServiceOperand{.port = 3000, .pid = 4243}.means(service)));
    EXPECT_FALSE((ServiceOperand{.port = 3001, .pid = 4242}.means(service)));
}

} // namespace portolan
