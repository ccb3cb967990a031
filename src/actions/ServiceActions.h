#pragma once

#include "ProcessIdentity.h"
#include "Service.h"

#include <chrono>
#include <memory>
#include <optional>

namespace portolan {

class ProcessHandle;

/// What the user can do to a discovered server. Every action acts at once, on the main thread, without
/// waiting for anybody; none of them reports a failure or changes the list. Without a folder the folder
/// actions do nothing.
namespace ServiceActions {

/// How long a server has to end by itself before it is killed.
inline constexpr std::chrono::milliseconds stopGrace(1500);

/// Sends SIGTERM to the server's process now and, if it still is there after `stopGrace`, SIGKILL. Signals
/// nobody if the process that was listed, `identity`, has ended, whoever has its pid by now; where the system
/// tells no identities, it is whoever has the pid at this call. A program that ends earlier leaves it at
/// SIGTERM.
void stop(const Service &service, const std::optional<ProcessIdentity> &identity);
/// The same to a process that is held already.
void stop(std::shared_ptr<const ProcessHandle> process);

/// Opens the server's address in the user's browser.
void openInBrowser(const Service &service);

/// Puts the server's address, "http://localhost:" and the port, on the clipboard.
void copyURL(const Service &service);
/// Puts the port's number on the clipboard.
void copyPort(const Service &service);

/// Shows the project folder in the file manager.
void revealInFinder(const Service &service);
/// Opens the project folder in the first code editor that is installed, else in the file manager.
void openInEditor(const Service &service);
/// Opens a terminal window whose shell is in the project folder.
void openInTerminal(const Service &service);

} // namespace ServiceActions

} // namespace portolan
