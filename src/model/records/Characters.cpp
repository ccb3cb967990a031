// SPDX-License-Identifier: MIT
#include "Characters.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace portolan {

namespace {

constexpr char32_t zeroWidthNonJoiner = 0x200C;
constexpr char32_t zeroWidthJoiner = 0x200D;

struct Range
{
    char32_t first;
    char32_t last;
};

// Characters that are invisible although their category is letter, mark, symbol or unassigned.
constexpr std::array shapeless{
    Range{0x034F, 0x034F},   // grapheme joiner
    Range{0x115F, 0x1160},   // fillers of Hangul syllables
    Range{0x17B4, 0x17B5},   // inherent vowels of Khmer
    Range{0x2065, 0x2065},   // unassigned, between the directional marks
    Range{0x2800, 0x2800},   // the empty cell of Braille
    Range{0x3164, 0x3164},   // filler of Hangul letters
    Range{0xFFA0, 0xFFA0},   // the same, narrow
    Range{0xFFF0, 0xFFF8},   // unassigned, reserved for controls
    Range{0x1D159, 0x1D159}, // note without a head
    Range{0xE0000, 0xE00FF}, // tags, and unassigned around the variation selectors
    Range{0xE01F0, 0xE0FFF},
};

bool isShapeless(char32_t character)
{
    return std::ranges::any_of(shapeless, [character](const Range &range) {
        return range.first <= character && character <= range.last;
    });
}

} // namespace

bool Characters::isShowable(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Format:
        return character == zeroWidthJoiner || character == zeroWidthNonJoiner;
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return !QChar::isNonCharacter(character) && !isShapeless(character);
    }
}

} // namespace portolan
