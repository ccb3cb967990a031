// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopEntry.h"

#include <QStringList>

#include <optional>

namespace portolan {

/// The autostart entry of this program: `portolan.desktop` in the XDG autostart folders. Nothing is cached:
/// every call reads the files. Main thread.
class Autostart
{
public:
    /// The folders to search and the program that a new entry starts.
    struct Session
    {
        QString userFolder;        ///< absolute path of the user's autostart folder; empty if there is none
        QStringList systemFolders; ///< the system-wide ones, in order of precedence
        QStringList desktops;      ///< the names in $XDG_CURRENT_DESKTOP
        QString program;           ///< absolute path of this program; empty if unknown
    };

    explicit Autostart(Session session);
    /// The entry of this program in the current session.
    [[nodiscard]] static Autostart ofThisProgram();

    /// Whether the next login starts the program: there is an entry, the desktop has not turned it off, and
    /// its program exists.
    [[nodiscard]] bool isEnabled() const;

    /// Writes the user's entry, replacing an existing one, so that the next login starts the program. Returns
    /// whether it could be written.
    bool add() const;
    /// Removes the user's entry, or hides the system-wide one, so that the next login does not start the
    /// program. Returns whether that succeeded.
    bool remove() const;

private:
    [[nodiscard]] QString userFile() const;
    [[nodiscard]] std::optional<DesktopEntry> systemEntry() const;
    [[nodiscard]] bool isTurnedOff(const DesktopEntry &entry) const;
    [[nodiscard]] bool writeEntry(const QByteArray &lastLine) const;

    Session m_session;
};

} // namespace portolan
