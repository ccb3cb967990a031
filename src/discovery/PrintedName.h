// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

/// Names as lsof prints them in a UTF-8 locale: in one line, with an escape in place of every byte that is
/// not part of a printable character. Pure functions.
namespace portolan::PrintedName {

/// How `name` is printed.
[[nodiscard]] QString of(QByteArrayView name);

/// The name that was printed as `printed`. What is no escape stays, also a control character in its caret
/// form ("^["): a caret may just as well be one.
[[nodiscard]] QString plain(const QString &printed);

} // namespace portolan::PrintedName
