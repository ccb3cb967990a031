#include "Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace portolan {

void Clipboard::setText(const QString &text)
{
    // Replaces all formats at once. An emptied clipboard in between would make some clipboard managers put
    // the old text back.
    QGuiApplication::clipboard()->setText(text);
}

} // namespace portolan
