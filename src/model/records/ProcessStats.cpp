// SPDX-License-Identifier: MIT
#include "ProcessStats.h"

#include <array>
#include <charconv>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

/// `value` with that many decimals, as printf writes it in the C locale: exact halves are rounded to the even
/// digit, while Qt's own formatting rounds them away from zero.
QString fixed(double value, int decimals)
{
    std::array<char, 512> digits; // more than the largest double has
    const auto end =
        std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals).ptr;
    return QString::fromLatin1(digits.data(), end - digits.data());
}

} // namespace

QString ProcessStats::uptimeText() const
{
    const qint64 s = uptimeSeconds;
    if (s < minute)
        return QString::number(s) + u's';
    if (s < hour)
        return QString::number(s / minute) + u'm';
    if (s < day)
        return QString::number(s / hour) + u"h "_s + QString::number(s / minute % 60) + u'm';
    return QString::number(s / day) + u"d "_s + QString::number(s / hour % 24) + u'h';
}

QString ProcessStats::cpuText() const
{
    return fixed(cpuPercent, 0) + u'%';
}

QString ProcessStats::memoryText() const
{
    if (memoryMB >= 1024.0)
        return fixed(memoryMB / 1024.0, 1) + u" GB"_s;
    return fixed(memoryMB, 0) + u" MB"_s;
}

} // namespace portolan
