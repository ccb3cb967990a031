#pragma once

#include "DesktopEntry.h"

#include <QStringList>

#include <optional>

namespace portolan {

/// This program's entry among those that the desktop starts at login, `portolan.desktop` in the autostart
/// folders. Keeps nothing but where to look: every question reads the files. Main thread.
class Autostart
{
public:
    enum class Status {
        notRegistered,    ///< there is no entry
        enabled,          ///< the next login starts the program
        requiresApproval, ///< there is an entry, but the user's desktop has turned it off
        notFound,         ///< the entry's program is gone, or no entry can be made here
    };

    /// Where entries are looked for and what a new one starts.
    struct Session
    {
        QString userFolder;        ///< absolute path of the user's autostart folder; empty: there is none
        QStringList systemFolders; ///< the system's, the strongest first
        QStringList desktops;      ///< names of the running desktop, as in $XDG_CURRENT_DESKTOP
        QString program;           ///< absolute path of this program; empty: unknown
    };

    explicit Autostart(Session session);
    /// For this program in the session that it runs in.
    [[nodiscard]] static Autostart ofThisProgram();

    [[nodiscard]] Status status() const;

    /// Makes the next login start the program: writes the user's entry, in place of any that is there, which
    /// is this program's own. Returns whether the entry could be written.
    bool add() const;
    /// Makes the next login not start it. Returns whether the entry could be removed.
    bool remove() const;

private:
    [[nodiscard]] QString userFile() const;
    [[nodiscard]] std::optional<DesktopEntry> systemEntry() const;
    [[nodiscard]] bool isTurnedOff(const DesktopEntry &entry) const;
    [[nodiscard]] bool writeEntry(const QByteArray &lastLine) const;

    Session m_session;
};

} // namespace portolan
