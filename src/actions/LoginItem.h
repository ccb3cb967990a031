// SPDX-License-Identifier: MIT
#pragma once

#include "Autostart.h"

#include <QObject>

namespace portolan {

/// Whether the program starts at login. The state is the autostart entry; nothing is cached. Main thread;
/// reads and writes one small file.
///
/// The functions are virtual for the tests of the views.
class LoginItem : public QObject
{
    Q_OBJECT

public:
    explicit LoginItem(Autostart entry = Autostart::ofThisProgram(), QObject *parent = nullptr);

    /// The current state. An entry that the desktop has turned off, or whose program is gone, counts as off.
    Q_INVOKABLE [[nodiscard]] virtual bool isEnabled() const;

    /// Requests a state and returns the resulting one, which differs from it if the request failed.
    Q_INVOKABLE virtual bool setEnabled(bool enabled);

private:
    const Autostart m_entry;
};

} // namespace portolan
