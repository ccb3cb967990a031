// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QObject;

namespace portolan {

/// The buttons of a window's title bar and their order, as the desktop's settings have them: "minimize",
/// "maximize" and "close", from left to right.
struct TitleButtons
{
    QStringList left;
    QStringList right = {QStringLiteral("minimize"), QStringLiteral("maximize"), QStringLiteral("close")};

    friend bool operator==(const TitleButtons &, const TitleButtons &) = default;

    /// Reads a layout as GTK and GNOME write it, for instance "menu:minimize,maximize,close".
    [[nodiscard]] static TitleButtons fromLayout(const QString &layout);
    /// Reads the two sides as KWin writes them, a letter for each button, for instance "MS" and "HIAX".
    [[nodiscard]] static TitleButtons fromLetters(const QString &left, const QString &right);

    /// Calls `found` with the desktop's own: KWin's on KDE, else the settings daemon's (XSETTINGS) at once,
    /// or that of the settings portal when it has answered. Does not call it if none of these has a value, or
    /// once `context` is destroyed. Main thread.
    static void find(QObject *context, const std::function<void(const TitleButtons &)> &found);
};

} // namespace portolan
