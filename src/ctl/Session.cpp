#include "Session.h"

#include "PortScanner.h"

#include <QFuture>

namespace portolan {

Session::Session(const CommandLine &line)
    : m_defaults(UserDefaults::defaultPath(), UserDefaults::Access::readOnly)
    , m_store(m_defaults, PortScanner::scan, [this, isProbed = line.probe](qint64 port) {
        return isProbed ? m_checker.check(port) : QtFuture::makeReadyFuture(Health::unknown());
    })
{
    m_store.setAutoRefresh(false); // each command has a rhythm of its own
    m_store.setSearchText(line.search);
    if (line.sort)
        m_store.setSortOrder(*line.sort);
}

} // namespace portolan
