// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace portolan {

// The process names in which the kernel source and lsof differ: those that lsof is known to get wrong.

/// lsof looks for the bracket that closes the name by counting, and takes an empty name for the last one it
/// read.
inline bool isMisreadByLsof(const QByteArray &name)
{
    int open = 1;
    for (const char c : name) {
        open += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (open == 0)
            return true;
    }
    return open != 1 || name.isEmpty();
}

/// Given by a runtime to the main thread: the executable says more.
inline bool isThreadName(const QByteArray &name)
{
    return name == "MainThread" || name == "node-MainThread";
}

} // namespace portolan
