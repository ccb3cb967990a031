// SPDX-License-Identifier: MIT
#pragma once

#include "ProcessInspector.h"

#include <QStringView>

namespace portolan {

namespace ProcessInspector {

/// Seconds of an elapsed time like "3-04:05:06". Takes any chain of groups: what is no number counts 0, what
/// is too large for 64 bits stays at their end.
[[nodiscard]] qint64 parseETime(QStringView text);

} // namespace ProcessInspector

} // namespace portolan
