#pragma once

#include "CommandLine.h"
#include "FolderReader.h"
#include "HealthChecker.h"
#include "ProcessSource.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

#include <memory>

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
    std::unique_ptr<ProcessSource> m_source;
    FolderReader m_files;
    HealthChecker m_checker;
    ServiceStore m_store;
};

} // namespace portolan
