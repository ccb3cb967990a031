#pragma once

#include <QString>

namespace portolan {

/// The user's file manager.
namespace FileManager {

/// Shows the folder at the absolute path `folder` in a file manager window and returns at once. Where the
/// session has no file manager on its bus, or that one does not answer within 5 s, whatever opens folders
/// there. Needs the main thread's event loop.
void show(const QString &folder);

} // namespace FileManager

} // namespace portolan
