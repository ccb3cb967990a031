#pragma once

#include <QString>
#include <QUrl>

/// The user's own choice of program for a thing, by way of xdg-open.
namespace XdgOpen {

/// Whether there is an xdg-open to open anything with.
[[nodiscard]] bool isInstalled();

/// Opens an http or https address in the user's browser. Any other address is left alone. Never waits; a
/// desktop without xdg-open, or a browser that does not start, goes unnoticed.
void address(const QUrl &url);

/// Opens the folder at the absolute path `folder`, with the same lack of ceremony.
void folder(const QString &folder);

} // namespace XdgOpen
