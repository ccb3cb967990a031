// SPDX-License-Identifier: MIT
#include "Service.h"

#include "HomeFolder.h"

namespace portolan {

using namespace Qt::StringLiterals;

QString Service::id() const
{
    return QString::number(pid) + u'-' + QString::number(port);
}

QString Service::url() const
{
    return u"http://localhost:"_s + QString::number(port);
}

std::optional<QString> Service::prettyFolder() const
{
    if (!folderPath)
        return std::nullopt;
    return HomeFolder::abbreviated(*folderPath, HomeFolder::paths());
}

size_t qHash(const Service &service, size_t seed)
{
    return qHashMulti(seed, service.pid, service.port, service.command, service.folderPath.has_value(),
                      service.folderPath.value_or(QString()), service.displayName, service.framework,
                      service.health, service.stats.has_value(), service.stats.value_or(ProcessStats()));
}

} // namespace portolan
