// SPDX-License-Identifier: MIT
#include "ProcessInspector.h"

#include "StrictNumber.h"

#include <QVarLengthArray>

#include <limits>

namespace portolan {

namespace {

constexpr double megabytesPerKibibyte = 0.0009765625;

/// a × factor + b, saturating.
qint64 multipliedAndAdded(qint64 a, qint64 factor, qint64 b)
{
    const auto end = [](bool negative) {
        return negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    };
    qint64 product = 0;
    if (__builtin_mul_overflow(a, factor, &product))
        product = end(a < 0);
    qint64 sum = 0;
    return __builtin_add_overflow(product, b, &sum) ? end(b < 0) : sum;
}

} // namespace

std::optional<ProcessStats> ProcessInspector::parse(const QString &output)
{
    QVarLengthArray<QStringView, 3> columns;
    for (QStringView column : QStringView(output).trimmed().tokenize(u' ', Qt::SkipEmptyParts)) {
        columns.append(column);
        if (columns.size() == 3)
            break;
    }
    if (columns.size() < 3)
        return std::nullopt;
    return ProcessStats{
        .uptimeSeconds = parseETime(columns[0]),
        .cpuPercent = StrictNumber::toDouble(columns[1]).value_or(0),
        .memoryMB = StrictNumber::toDouble(columns[2]).value_or(0) * megabytesPerKibibyte,
    };
}

qint64 ProcessInspector::parseETime(QStringView text)
{
    qint64 days = 0;
    QStringView clock = text;
    if (const qsizetype dash = text.indexOf(u'-'); dash >= 0) {
        days = StrictNumber::toInt64(text.first(dash)).value_or(0);
        clock = text.sliced(dash + 1);
    }
    qint64 seconds = 0;
    for (QStringView group : clock.tokenize(u':', Qt::SkipEmptyParts))
        seconds = multipliedAndAdded(seconds, 60, StrictNumber::toInt64(group).value_or(0));
    return multipliedAndAdded(days, 86400, seconds);
}

} // namespace portolan
