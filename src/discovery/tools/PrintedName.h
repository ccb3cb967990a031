#pragma once

#include <QString>

namespace portolan {

/// Names of files as lsof prints them: in one line, with a backslash before what cannot be printed as it is.
namespace PrintedName {

/// The name that was printed as `printed`. A pure function. What is no escape stays, also a control character
/// in its caret form ("^["): a caret may just as well be one.
[[nodiscard]] QString plain(const QString &printed);

} // namespace PrintedName

} // namespace portolan
