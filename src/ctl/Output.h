#pragma once

#include "Ink.h"

#include <QByteArrayView>

namespace portolan {

/// What standard output is connected to, and writing to it.
namespace Output {

struct Size
{
    int columns = 80;
    int rows = 24;

    friend bool operator==(const Size &, const Size &) = default;
};

/// Whether standard output is a terminal.
[[nodiscard]] bool isTerminal();
/// Whether it is one that can erase and go back.
[[nodiscard]] bool isAddressable();
/// How large it is now.
[[nodiscard]] Size size();
/// Colours for what is written to it: none where it is no terminal or the user wants none.
[[nodiscard]] Ink ink();

/// Says on standard error what went wrong, in the program's name. What in `message` is a stranger's has to be
/// harmless.
void complain(const QString &message);

/// Writes all of `bytes` to standard output, waiting for whoever reads there, but no longer than until the
/// user asks the program to end. Where that fails, says why on standard error (unless just nobody reads any
/// more) and returns false.
[[nodiscard]] bool write(QByteArrayView bytes);

} // namespace Output

} // namespace portolan
