#pragma once

#include "CommandLine.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

namespace portolan {

/// The store of one command: with the user's settings, which are read and never written, and with the search
/// text, order and probing that the command line asks for.
class Session
{
public:
    explicit Session(const CommandLine &line);

    [[nodiscard]] ServiceStore &store() { return m_store; }

private:
    UserDefaults m_defaults;
    ServiceStore m_store;
};

} // namespace portolan
