#pragma once

#include <QString>

namespace portolan {

/// The proof, handed over by whoever the user clicked, that a window may come to the front on Wayland.
namespace ActivationToken {

/// The token that this process was started with; empty if none.
[[nodiscard]] QString ofThisStart();

/// Keeps `token` for the next window that asks for the focus, which uses it up. Does nothing where windows
/// need no token, so that it cannot end up in the environment of a program started later.
void keep(const QString &token);

} // namespace ActivationToken

} // namespace portolan
