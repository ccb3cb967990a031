#pragma once

#include <QByteArrayView>

namespace DetachedProgram {

/// Whether the environment entry `assignment` ("NAME=value") is passed on to a started program.
[[nodiscard]] bool isPassedOn(QByteArrayView assignment);

} // namespace DetachedProgram
