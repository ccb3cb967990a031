#include "ServiceOperand.h"

#include <algorithm>
#include <limits>

namespace portolan {

namespace {

/// A number as people write it: digits alone, from 1 to `most`.
std::optional<qint32> number(QStringView text, qint32 most)
{
    if (!std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return std::nullopt;
    bool fits = false;
    const qint32 value = text.toInt(&fits);
    return fits && value >= 1 && value <= most ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<ServiceOperand> ServiceOperand::parse(QStringView operand)
{
    const qsizetype hyphen = operand.indexOf(u'-');
    const auto port = number(operand.sliced(hyphen + 1), std::numeric_limits<quint16>::max());
    if (!port)
        return std::nullopt;
    if (hyphen < 0)
        return ServiceOperand{.port = *port};
    const auto pid = number(operand.first(hyphen), std::numeric_limits<qint32>::max());
    return pid ? std::optional(ServiceOperand{.port = *port, .pid = pid}) : std::nullopt;
}

bool ServiceOperand::means(const Service &service) const
{
    return service.port == port && (!pid || service.pid == *pid);
}

} // namespace portolan
