#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

namespace portolan {

/// The user's own choice of program for a thing, by way of xdg-open.
namespace XdgOpen {

/// Whether there is an xdg-open to open anything with.
[[nodiscard]] bool isInstalled();

/// Opens an http or https address in the user's browser. Any other address is left alone. Never waits; a
/// desktop without xdg-open, or a browser that does not start, goes unnoticed.
void address(const QUrl &url);

/// The same, but waits for up to `patience` for xdg-open to end, which may be only when the browser does.
/// Returns false where it failed within that time or was not even started. For programs that end soon
/// themselves: the browser may stay their child.
[[nodiscard]] bool addressWatched(const QUrl &url, std::chrono::milliseconds patience);

/// Opens the folder at the absolute path `folder`, with the same lack of ceremony.
void folder(const QString &folder);

} // namespace XdgOpen

} // namespace portolan
