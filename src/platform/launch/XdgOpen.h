// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

/// Opens addresses and folders with the user's default applications, by running xdg-open.
namespace portolan::XdgOpen {

/// Whether xdg-open is on $PATH.
[[nodiscard]] bool isInstalled();

/// Opens an http or https address in the user's browser; does nothing for any other address. Does not wait
/// and reports no failure.
void address(const QUrl &url);

/// As address(), but waits up to `timeout` for xdg-open to exit. Returns false if it could not be started or
/// exited with an error within that time; xdg-open may run for as long as the browser does. For programs that
/// exit soon afterwards, as the browser may stay their child process.
[[nodiscard]] bool addressWatched(const QUrl &url, std::chrono::milliseconds timeout);

/// Opens the folder at the absolute path `folder`. Does not wait and reports no failure.
void folder(const QString &folder);

} // namespace portolan::XdgOpen
