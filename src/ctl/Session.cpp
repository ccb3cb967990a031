#include "Session.h"

#include "PortScanner.h"
#include "SystemSource.h"

#include <QFuture>

namespace portolan {

Session::Session(const CommandLine &line)
    : m_defaults(UserDefaults::defaultPath(), UserDefaults::Access::readOnly)
    , m_source(SystemSource::make())
    , m_store(
          m_defaults,
          [this](std::stop_token stop) { return PortScanner::scan(*m_source, m_files, std::move(stop)); },
          [this, isProbed = line.probe](qint64 port) {
              return isProbed ? m_checker.check(port) : QtFuture::makeReadyFuture(Health::unknown());
          })
{
    m_store.setAutoRefresh(false); // each command refreshes at times of its own
    m_store.setSearchText(line.search);
    if (line.sort)
        m_store.setSortOrder(*line.sort);
}

} // namespace portolan
