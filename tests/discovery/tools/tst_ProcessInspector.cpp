// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "ProcessFacts.h"
#include "ProcessInspector.h"

#include <gtest/gtest.h>

#include <limits>

namespace portolan {

using namespace Qt::StringLiterals;
using ProcessInspector::parse;
using ProcessInspector::parseETime;

constexpr qint64 greatest = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

struct TimeCase
{
    const char *name;
    QString text;
    qint64 seconds;
};

class ElapsedTime : public testing::TestWithParam<TimeCase>
{};

TEST_P(ElapsedTime, IsCountedInSeconds)
{
    EXPECT_EQ(parseETime(GetParam().text), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ElapsedTime,
    testing::Values(TimeCase{"minutesAndSeconds", u"05:07"_s, 307}, TimeCase{"hours", u"01:02:03"_s, 3723},
                    TimeCase{"days", u"2-01:00:00"_s, 176400}, TimeCase{"secondsAlone", u"42"_s, 42},
                    TimeCase{"allUnits", u"3-04:05:06"_s, 273906},
                    TimeCase{"manyDays", u"4321-00:00:00"_s, 4321LL * 86400},
                    TimeCase{"fourGroups", u"1:00:00:00"_s, 216000}, TimeCase{"empty", u""_s, 0},
                    TimeCase{"colonsOnly", u":::"_s, 0}, TimeCase{"emptyGroups", u":1::2:"_s, 62},
                    TimeCase{"noDayNumber", u"-05"_s, 5}, TimeCase{"daysAlone", u"1-"_s, 86400},
                    TimeCase{"dashOnly", u"-"_s, 0}, TimeCase{"daysAreNoNumber", u"x-00:05"_s, 5},
                    TimeCase{"groupIsNoNumber", u"01:xx:03"_s, 3603}, TimeCase{"word", u"ELAPSED"_s, 0},
                    TimeCase{"spaceInAGroup", u" 5:07"_s, 7}, TimeCase{"plusSigns", u"+1-+2:+3"_s, 86523},
                    TimeCase{"negativeGroup", u"0-1:-5"_s, 55},
                    TimeCase{"onlyTheFirstDashParts", u"1-2-3"_s, 86400},
                    TimeCase{"colonsBeforeTheDash", u"1:2-3"_s, 3},
                    TimeCase{"tooLargeAGroup", u"99999999999999999999:07"_s, 7},
                    TimeCase{"productLeavesTheRange", u"9223372036854775807:00"_s, greatest},
                    TimeCase{"sumLeavesTheRange", u"153722867280912930:60"_s, greatest},
                    TimeCase{"daysLeaveTheRange", u"9223372036854775807-00:00"_s, greatest},
                    TimeCase{"negativeLeavesTheRange", u"-9223372036854775807-00:00"_s, 0},
                    TimeCase{"negativeProductLeavesTheRange", u"0--9223372036854775807:-1"_s, least}),
    [](const auto &row) { return std::string(row.param.name); });

static bool operator==(const std::optional<ProcessStats> &stats, const ProcessStats &expected)
{
    return stats && *stats == expected;
}

TEST(ProcessRow, GivesTheFirstThreeColumns)
{
    EXPECT_EQ(parse(u"  3-04:05:06   12.5  204800\n"_s), (ProcessStats{273906, 12.5, 200}));
    EXPECT_EQ(parse(u"01:30 0.0 1024"_s), (ProcessStats{90, 0, 1}));
    EXPECT_EQ(parse(u"01:30 0.0 1024 more of it"_s), (ProcessStats{90, 0, 1}));
    EXPECT_EQ(parse(u"\n\t 01:30 6400 1536 \r\n"_s), (ProcessStats{90, 6400, 1.5}));
}

TEST(ProcessRow, WithLessThanThreeColumnsIsAbsent)
{
    for (const QString &output : {u""_s, u"\n"_s, u" \t\n"_s, u"01:30"_s, u"01:30 0.0"_s, u"01:30 0.0 \n"_s})
        EXPECT_EQ(parse(output), std::nullopt) << output.toStdString();
}

TEST(ProcessRow, ColumnThatIsNoNumberIsZero)
{
    EXPECT_EQ(parse(u"01:30 abc 1024"_s), (ProcessStats{90, 0, 1}));
    EXPECT_EQ(parse(u"01:30 12,5 1024"_s), (ProcessStats{90, 0, 1}));
    EXPECT_EQ(parse(u"01:30 12.5 -"_s), (ProcessStats{90, 12.5, 0}));
    EXPECT_EQ(parse(u"- - -"_s), (ProcessStats{0, 0, 0}));
}

TEST(ProcessRow, IsPartedAtSpacesOnly)
{
    EXPECT_EQ(parse(u"01:30\t0.0\t1024"_s), std::nullopt);
    EXPECT_EQ(parse(u"01:30 0.0 1024\n02:30 1.0 2048"_s), (ProcessStats{90, 0, 0}));
}

struct RecordedCase
{
    const char *file;
    std::optional<ProcessStats> stats;
};

class RecordedRow : public testing::TestWithParam<RecordedCase>
{};

TEST_P(RecordedRow, IsRead)
{
    const QString file =
        QStringLiteral(PORTOLAN_TEST_DATA "/ps/%1.txt").arg(QLatin1StringView(GetParam().file));
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_TRUE(parse(QString::fromUtf8(contentsOf(file))) == GetParam().stats);
}

INSTANTIATE_TEST_SUITE_P(
    Files, RecordedRow,
    testing::Values(RecordedCase{"one-second-old", ProcessStats{1, 1.8, 14412 / 1024.0}},
                    RecordedCase{"long-running", ProcessStats{1910, 0.3, 20924 / 1024.0}},
                    RecordedCase{"kernel-thread", ProcessStats{1910, 0, 0}},
                    RecordedCase{"zombie", ProcessStats{1, 0, 0}}, RecordedCase{"gone", std::nullopt}),
    [](const auto &row) {
        std::string name = row.param.file;
        std::ranges::replace(name, '-', '_');
        return name;
    });

} // namespace portolan
