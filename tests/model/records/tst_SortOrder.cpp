// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "SortOrder.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

TEST(SortOrder, CasesHaveTheirStoredTextAndLabel)
{
    const auto cases = SortOrder::allCases();
    const QString rawValues[] = {u"port"_s, u"name"_s, u"status"_s, u"uptime"_s};
    const QString labels[] = {u"Port"_s, u"Name"_s, u"Status"_s, u"Uptime"_s};
    ASSERT_EQ(cases.size(), std::size(rawValues));
    for (size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(cases[i].rawValue(), rawValues[i]);
        EXPECT_EQ(cases[i].id(), rawValues[i]);
        EXPECT_EQ(cases[i].label(), labels[i]);
        EXPECT_EQ(SortOrder::fromRawValue(rawValues[i]), cases[i]);
    }
}

TEST(SortOrder, AcceptsOnlyTheLowerCaseStoredTexts)
{
    for (const QString &text : {u"Port"_s, u"UPTIME"_s, u"size"_s, u" port"_s, u""_s})
        EXPECT_EQ(SortOrder::fromRawValue(text), std::nullopt) << text.toStdString();
}

TEST(SortOrder, DefaultsToPort)
{
    EXPECT_EQ(SortOrder(), SortOrder::port);
}

} // namespace portolan
