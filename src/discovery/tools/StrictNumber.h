// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

/// Parses numbers as the tools print them. The conversions of Qt and C also accept spaces, other digits and
/// other bases.
namespace portolan::StrictNumber {

/// The whole text as a decimal integer: an optional sign, then ASCII digits only. Nothing for any other text
/// and for a value out of range.
[[nodiscard]] std::optional<qint32> toInt32(QStringView text);
[[nodiscard]] std::optional<qint64> toInt64(QStringView text);

/// The whole text as a finite decimal number with "." as decimal point; an exponent is allowed.
[[nodiscard]] std::optional<double> toDouble(QStringView text);

} // namespace portolan::StrictNumber
