#pragma once

#include "CommandLine.h"
#include "HealthChecker.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

namespace portolan {

/// The store that a command works on: with the user's settings, which are read and never written, and with
/// what the command line says about search, order and probing.
class Session
{
public:
    explicit Session(const CommandLine &line);

    [[nodiscard]] ServiceStore &store() { return m_store; }

private:
    UserDefaults m_defaults;
    HealthChecker m_checker;
    ServiceStore m_store;
};

} // namespace portolan
