// SPDX-License-Identifier: MIT
#include "Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace portolan {

void Clipboard::setText(const QString &text)
{
    // Not cleared first: some clipboard managers restore the previous text when the clipboard is empty.
    QGuiApplication::clipboard()->setText(text);
}

} // namespace portolan
