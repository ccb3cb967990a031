#include "Printers.h"
#include "ProcessStats.h"

#include <gtest/gtest.h>

#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;

struct UptimeCase
{
    qint64 seconds;
    QString text;
};

class UptimeText : public testing::TestWithParam<UptimeCase>
{};

TEST_P(UptimeText, ShowsTheTwoLargestUnits)
{
    EXPECT_EQ((ProcessStats{GetParam().seconds, 0, 0}.uptimeText()), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Values, UptimeText,
                         testing::Values(UptimeCase{0, u"0s"_s}, UptimeCase{42, u"42s"_s},
                                         UptimeCase{59, u"59s"_s}, UptimeCase{-1, u"-1s"_s},
                                         UptimeCase{-5, u"-5s"_s}, UptimeCase{-100000, u"-100000s"_s},
                                         UptimeCase{60, u"1m"_s}, UptimeCase{3599, u"59m"_s},
                                         UptimeCase{3600, u"1h 0m"_s}, UptimeCase{5400, u"1h 30m"_s},
                                         UptimeCase{86399, u"23h 59m"_s}, UptimeCase{86400, u"1d 0h"_s},
                                         UptimeCase{90061, u"1d 1h"_s}, UptimeCase{200000, u"2d 7h"_s},
                                         UptimeCase{400LL * 86400, u"400d 0h"_s}));

struct MemoryCase
{
    double megabytes;
    QString text;
};

class MemoryText : public testing::TestWithParam<MemoryCase>
{};

TEST_P(MemoryText, SwitchesToGigabytesAt1024)
{
    EXPECT_EQ((ProcessStats{0, 0, GetParam().megabytes}.memoryText()), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Values, MemoryText,
                         testing::Values(MemoryCase{0, u"0 MB"_s}, MemoryCase{87.4, u"87 MB"_s},
                                         MemoryCase{1023.7, u"1024 MB"_s}, MemoryCase{1023.9, u"1024 MB"_s},
                                         MemoryCase{1024.0, u"1.0 GB"_s}, MemoryCase{1536, u"1.5 GB"_s},
                                         MemoryCase{10240, u"10.0 GB"_s}));

TEST(ProcessStats, CpuTextHasNoDecimals)
{
    EXPECT_EQ((ProcessStats{0, 0.0, 0}.cpuText()), u"0%"_s);
    EXPECT_EQ((ProcessStats{0, 12.6, 0}.cpuText()), u"13%"_s);
    EXPECT_EQ((ProcessStats{0, 640.0, 0}.cpuText()), u"640%"_s);
}

TEST(ProcessStats, NotANumberIsNeverEqualToItself)
{
    const ProcessStats stats{1, std::numeric_limits<double>::quiet_NaN(), 1};
    EXPECT_FALSE(stats == stats);
}

TEST(ProcessStats, ZerosOfBothSignsAreEqualAndHashAlike)
{
    const ProcessStats plus{1, 0.0, 0.0};
    const ProcessStats minus{1, -0.0, -0.0};
    EXPECT_EQ(plus, minus);
    EXPECT_EQ(qHash(plus), qHash(minus));
}

} // namespace portolan
