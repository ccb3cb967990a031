// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The desktop's file manager, called over the session bus.
namespace portolan::FileManager {

/// Shows the folder at the absolute path `folder` in a file manager window and returns at once. Falls back to
/// xdg-open if no file manager is on the session bus, or if it fails or does not answer within 5 s. Needs
/// the main thread's event loop.
void show(const QString &folder);

} // namespace portolan::FileManager
