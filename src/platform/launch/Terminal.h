#pragma once

#include <QString>

namespace portolan {

/// The user's terminal emulator.
namespace Terminal {

/// Opens a terminal window whose shell, the user's own, is in the folder at the absolute path `folder`. Never
/// waits; a desktop without a terminal goes unnoticed.
void open(const QString &folder);

} // namespace Terminal

} // namespace portolan
