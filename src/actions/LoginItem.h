// SPDX-License-Identifier: MIT
#pragma once

#include "Autostart.h"

#include <QObject>

namespace portolan {

/// Whether the program starts by itself when the user logs in. The desktop holds the state; nothing is kept
/// here. Main thread; reads and writes one small file.
///
/// There is one, which the views are given. Their tests give them another, hence the virtual functions.
class LoginItem : public QObject
{
    Q_OBJECT

public:
    explicit LoginItem(Autostart entry = Autostart::ofThisProgram(), QObject *parent = nullptr);

    /// What the desktop holds now. An entry that the desktop has turned off, or whose program is gone, counts
    /// as off.
    Q_INVOKABLE [[nodiscard]] virtual bool isEnabled() const;

    /// Asks for the state and returns what then holds. A request that fails, or that the desktop does not
    /// follow, shows in that alone.
    Q_INVOKABLE virtual bool setEnabled(bool enabled);

private:
    const Autostart m_entry;
};

} // namespace portolan
