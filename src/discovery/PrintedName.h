// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

/// Names as lsof prints them in a UTF-8 locale: in one line, with an escape in place of every byte that is
/// not part of a printable character. Pure functions.
namespace portolan::PrintedName {

/// `name` as lsof prints it.
[[nodiscard]] QString of(QByteArrayView name);

/// The name that was printed as `printed`. Text that is no escape stays, also the caret form of a control
/// character ("^["), which cannot be told from a real caret.
[[nodiscard]] QString plain(const QString &printed);

} // namespace portolan::PrintedName
