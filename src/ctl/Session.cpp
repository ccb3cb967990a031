#include "Session.h"

#include "SystemSource.h"

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
    , m_source(SystemSource::make())
    , m_store(
          m_defaults,
          [this](std::stop_token stop) { return PortScanner::scan(*m_source, m_files, std::move(stop)); },
          line.probe ? HealthChecker::check : notProbed)
{
    m_store.setAutoRefresh(false); // each command has a rhythm of its own
    m_store.setSearchText(line.search);
    if (line.sort)
        m_store.setSortOrder(*line.sort);
}

} // namespace portolan
