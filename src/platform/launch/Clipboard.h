#pragma once

#include <QString>

namespace portolan {

/// What the user pastes from: the desktop's clipboard.
namespace Clipboard {

/// Replaces whatever the clipboard holds by `text`. Main thread of a QGuiApplication; on Wayland only inside
/// the handling of the user's click or key.
void setText(const QString &text);

} // namespace Clipboard

} // namespace portolan
