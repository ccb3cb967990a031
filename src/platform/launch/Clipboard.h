// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The desktop's clipboard.
namespace portolan::Clipboard {

/// Replaces the content of the clipboard by `text`. Main thread of a QGuiApplication. On Wayland it works
/// only while a click or key of the user is handled.
void setText(const QString &text);

} // namespace portolan::Clipboard
