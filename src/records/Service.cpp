#include "Service.h"

#include "HomeFolder.h"

using namespace Qt::StringLiterals;

QString Service::id() const
{
    return QString::number(pid) + u'-' + QString::number(port);
}

QUrl Service::url() const
{
    return QUrl(u"http://localhost:"_s + QString::number(port));
}

std::optional<QString> Service::prettyFolder() const
{
    if (!folderPath)
        return std::nullopt;
    return HomeFolder::abbreviated(*folderPath, HomeFolder::path());
}

size_t qHash(const Service &service, size_t seed)
{
    const QtPrivate::QHashCombine combine;
    seed = qHashMulti(seed, service.pid, service.port, service.command, service.folderPath.has_value());
    if (service.folderPath)
        seed = combine(seed, *service.folderPath);
    seed = combine(seed, service.displayName);
    seed = combine(seed, service.framework);
    seed = combine(seed, service.health);
    seed = combine(seed, service.stats.has_value());
    if (service.stats)
        seed = combine(seed, *service.stats);
    return seed;
}
