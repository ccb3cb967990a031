// SPDX-License-Identifier: MIT
#include "Characters.h"

#include <gtest/gtest.h>

#include <QString>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

/// Those of `text` that are showable, or else those that are not.
std::u32string among(const std::u32string &text, bool showable)
{
    std::u32string result;
    for (const char32_t character : text) {
        if (Characters::isShowable(character) == showable)
            result += character;
    }
    return result;
}

} // namespace

TEST(Characters, ThatCanBeSeenAreShowable)
{
    const std::u32string texts[] = {U"My shop_2 (1)",
                                    U"Größe Ω 日本 שלום हिन्दी ខ្មែរ 한글 ﾊﾝ",
                                    U"e\u0301 ❤\uFE0F 葛\U000E0100",
                                    U"👩\u200D💻 \u0645\u200C\u0645",
                                    U"a\u00A0b\u3000c",
                                    U"⠁⠿ 𝄞"};
    for (const std::u32string &text : texts)
        EXPECT_EQ(among(text, false), U"") << QString::fromStdU32String(text).toStdString();
}

TEST(Characters, ThatHideOrDoThingsAreNot)
{
    const std::u32string texts[] = {
        std::u32string(1, U'\0') + U"\t\n\x1b\x7f\u0085\u009b",
        U"\u2028\u2029",
        U"\u00AD\u061C\u200B\u200E\u200F\u202E\u2066\u2069\uFEFF\uFFF9",
        U"\u034F\u115F\u1160\u17B4\u17B5\u2065\u2800\u3164\uFFA0\uFFF0\uFFF8\U0001D159",
        U"\U000E0000\U000E0041\U000E00FF\U000E01F0\U000E0FFF",
        {char32_t(0xD800), char32_t(0xDFFF), char32_t(0xFFFE), char32_t(0x1FFFF)},
    };
    for (const std::u32string &text : texts)
        EXPECT_EQ(among(text, true), U"");
}

} // namespace portolan
