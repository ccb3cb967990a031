// SPDX-License-Identifier: MIT
#include "StrictNumber.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>

namespace portolan {

namespace {

/// from_chars is as strict as needed, except that it does not accept a plus sign.
template <typename Number>
std::optional<Number> converted(QStringView text)
{
    if (text.startsWith(u'+')) {
        text = text.sliced(1);
        if (text.startsWith(u'-'))
            return std::nullopt;
    }
    QVarLengthArray<char, 32> digits(text.size());
    std::ranges::transform(text, digits.begin(), &QChar::toLatin1); // 0 for any other character
    Number number{};
    const char *const last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, number);
    if (error != std::errc() || end != last)
        return std::nullopt;
    return number;
}

} // namespace

std::optional<qint32> StrictNumber::toInt32(QStringView text)
{
    return converted<qint32>(text);
}

std::optional<qint64> StrictNumber::toInt64(QStringView text)
{
    return converted<qint64>(text);
}

std::optional<double> StrictNumber::toDouble(QStringView text)
{
    const std::optional<double> number = converted<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

} // namespace portolan
