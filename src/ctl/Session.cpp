#include "Session.h"

#include <QFuture>

namespace portolan {

namespace {

QFuture<Health> notProbed(qint64)
{
    return QtFuture::makeReadyFuture(Health::unknown());
}

} // namespace

Session::Session(const CommandLine &line)
    : m_defaults(UserDefaults::defaultPath(), UserDefaults::Access::readOnly)
    , m_store(m_defaults, PortScanner::scan, line.probe ? HealthChecker::check : notProbed)
{
    m_store.setAutoRefresh(false); // each command refreshes at times of its own
    m_store.setSearchText(line.search);
    if (line.sort)
        m_store.setSortOrder(*line.sort);
}

} // namespace portolan
