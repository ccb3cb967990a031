// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The XDG activation token, which a Wayland compositor demands before a window may take the focus. The panel
/// or launcher that the user clicked passes it on.
namespace portolan::ActivationToken {

/// The token in the environment of this process; empty if there is none.
[[nodiscard]] QString ofThisStart();

/// Stores `token` for the next window that requests activation, which consumes it. Does nothing on other
/// platforms than Wayland, so that programs started later do not inherit an unused token.
void keep(const QString &token);

} // namespace portolan::ActivationToken
