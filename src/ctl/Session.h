#pragma once

#include "AbandonableWorker.h"
#include "CommandLine.h"
#include "HealthChecker.h"
#include "ProcessSource.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

#include <memory>

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
    std::unique_ptr<ProcessSource> m_source;
    AbandonableWorker m_files;
    HealthChecker m_checker;
    ServiceStore m_store;
};

} // namespace portolan
