// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "ProcessStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

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
                                         MemoryCase{10240, u"10.0 GB"_s}, MemoryCase{0.5, u"0 MB"_s},
                                         MemoryCase{1.5, u"2 MB"_s}, MemoryCase{2.5, u"2 MB"_s},
                                         MemoryCase{1023.5, u"1024 MB"_s}, MemoryCase{1280, u"1.2 GB"_s},
                                         MemoryCase{1792, u"1.8 GB"_s}));

static std::string printed(const char *format, double value)
{
    std::string text(512, '\0');
    text.resize(size_t(std::snprintf(text.data(), text.size(), format, value)));
    return text;
}

TEST(ProcessStats, CpuTextHasNoDecimals)
{
    EXPECT_EQ((ProcessStats{0, 0.0, 0}.cpuText()), u"0%"_s);
    EXPECT_EQ((ProcessStats{0, 12.6, 0}.cpuText()), u"13%"_s);
    EXPECT_EQ((ProcessStats{0, 640.0, 0}.cpuText()), u"640%"_s);
}

TEST(ProcessStats, HalvesGoToTheEvenDigit)
{
    EXPECT_EQ((ProcessStats{0, 0.5, 0}.cpuText()), u"0%"_s);
    EXPECT_EQ((ProcessStats{0, 1.5, 0}.cpuText()), u"2%"_s);
    EXPECT_EQ((ProcessStats{0, 2.5, 0}.cpuText()), u"2%"_s);
    EXPECT_EQ((ProcessStats{0, 0.51, 0}.cpuText()), u"1%"_s);
}

TEST(ProcessStats, TextsAreThoseOfPrintfForEveryDouble)
{
    std::mt19937_64 random(1); // NOLINT(cert-msc51-cpp): the same values in every run
    for (int i = 0; i < 100'000; ++i) {
        // Multiples of 1/16, where halves are common, of all magnitudes.
        const double value = std::ldexp(double(random() % 100'000), int(random() % 12) - 4);
        const ProcessStats stats{0, value, value};
        ASSERT_EQ(stats.cpuText().toStdString(), printed("%.0f%%", value));
        ASSERT_EQ(stats.memoryText().toStdString(),
                  value >= 1024 ? printed("%.1f GB", value / 1024) : printed("%.0f MB", value));
    }
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ((ProcessStats{0, largest, 0}.cpuText().toStdString()), printed("%.0f%%", largest));
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
