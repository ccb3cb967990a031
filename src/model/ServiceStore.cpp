#include "ServiceStore.h"

#include "Mailbox.h"
#include "Pause.h"
#include "ServiceKey.h"
#include "UserDefaults.h"
#include "VisibleList.h"

#include <QHash>

#include <algorithm>
#include <system_error>
#include <utility>

namespace portolan {

namespace {

constexpr QStringView sortOrderKey = u"sortOrder";
constexpr QStringView pinnedPortsKey = u"pinnedPorts";
constexpr QStringView autoRefreshKey = u"autoRefresh";

/// `found` with the health that each service had in `known`; of two known services with one key, the later
/// counts.
QList<Service> merged(QList<Service> found, const QList<Service> &known)
{
    QHash<ServiceKey, Health> health;
    health.reserve(known.size());
    for (const Service &service : known)
        health.insert(keyOf(service), service.health);
    for (Service &service : found)
        service.health = health.value(keyOf(service), Health::unknown());
    return found;
}

/// Changes a property's value in place, which is always announced. The property lets go of the value
/// meanwhile, so that a list is not copied to change one element.
template <typename Property, typename Change>
void changeInPlace(Property &property, Change change)
{
    auto value = property.valueBypassingBindings();
    property.setValueBypassingBindings({});
    change(value);
    property.setValueBypassingBindings(std::move(value));
    property.notify();
}

} // namespace

ServiceStore::ServiceStore(UserDefaults &defaults, Scanner scan, Checker check,
                           std::chrono::milliseconds autoRefreshInterval, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_scan(std::move(scan))
    , m_check(std::move(check))
    , m_autoRefreshInterval(autoRefreshInterval)
    , m_derivedFrom{m_services.addNotifier([this] { announceDerived(); }),
                    m_searchText.addNotifier([this] { announceVisible(); }),
                    m_pinnedPorts.addNotifier([this] { announceVisibleOrder(); }),
                    m_sortOrder.addNotifier([this] { announceVisibleOrder(); })}
{
    load();
}

ServiceStore::~ServiceStore()
{
    // Coroutines use the other members until they end.
    m_waits.cancel();
}

std::optional<ProcessIdentity> ServiceStore::identityOf(const Service &service) const
{
    const auto found = m_identities.find(service.pid);
    return found == m_identities.end() ? std::nullopt : std::optional(*found);
}

void ServiceStore::load()
{
    if (const auto stored = m_defaults.string(sortOrderKey)) {
        if (const auto order = SortOrder::fromRawValue(stored.value))
            setSortOrder(*order);
    }
    if (const auto stored = m_defaults.integers(pinnedPortsKey)) {
        m_pinnedPorts = QSet<qint64>(stored.value.begin(), stored.value.end());
        storePinnedPorts();
    }
    if (const auto stored = m_defaults.boolean(autoRefreshKey))
        setAutoRefresh(stored.value);
}

void ServiceStore::setSortOrder(SortOrder sortOrder)
{
    m_sortOrder = sortOrder;
    m_defaults.setString(sortOrderKey, sortOrder.rawValue());
}

void ServiceStore::setSortOrderId(const QString &rawValue)
{
    if (const auto order = SortOrder::fromRawValue(rawValue))
        setSortOrder(*order);
}

QList<SortOrder> ServiceStore::sortOrders()
{
    const auto cases = SortOrder::allCases();
    return {cases.begin(), cases.end()};
}

void ServiceStore::storePinnedPorts()
{
    // Sorted, so that the same pins are the same file.
    QList<qint64> ports = m_pinnedPorts.valueBypassingBindings().values();
    std::ranges::sort(ports);
    m_defaults.setIntegers(pinnedPortsKey, ports);
}

void ServiceStore::setAutoRefresh(bool autoRefresh)
{
    m_autoRefresh = autoRefresh;
    m_defaults.setBoolean(autoRefreshKey, autoRefresh);
    if (autoRefresh)
        startAutoRefresh();
    else
        m_autoRefreshLoop.request_stop();
}

void ServiceStore::togglePin(const Service &service)
{
    changeInPlace(m_pinnedPorts, [port = service.port](QSet<qint64> &ports) {
        if (!ports.remove(port))
            ports.insert(port);
    });
    storePinnedPorts();
}

void ServiceStore::removeService(const Service &service)
{
    changeInPlace(m_services, [key = keyOf(service)](QList<Service> &services) {
        services.removeIf([key](const Service &candidate) { return keyOf(candidate) == key; });
    });
}

// The derived properties read the stored ones without registering: whoever reads them depends on them alone,
// and is told once by the announcements below.

QList<Service> ServiceStore::computeVisible() const
{
    return VisibleList::of(m_services.valueBypassingBindings(),
                           {m_searchText.valueBypassingBindings(), m_pinnedPorts.valueBypassingBindings(),
                            m_sortOrder.valueBypassingBindings()});
}

int ServiceStore::computeRunningCount() const
{
    return int(
        std::ranges::count_if(m_services.valueBypassingBindings(), &Health::isHealthy, &Service::health));
}

void ServiceStore::announceDerived()
{
    announceVisible();
    m_runningCount.notify();
    Q_EMIT runningCountChanged();
}

void ServiceStore::announceVisible()
{
    m_visible.notify();
    Q_EMIT visibleChanged();
}

void ServiceStore::announceVisibleOrder()
{
    if (VisibleList::hasOrder(m_services.valueBypassingBindings(), m_searchText.valueBypassingBindings()))
        announceVisible();
}

void ServiceStore::start()
{
    refresh();
    if (m_autoRefresh.valueBypassingBindings())
        startAutoRefresh();
}

QCoro::Task<> ServiceStore::refresh()
{
    if (m_isScanning.valueBypassingBindings())
        co_return;
    m_isScanning = true;
    Mailbox<ScanResult> scan(m_waits);
    startScan(scan.sender());
    std::optional<ScanResult> found = co_await scan.next();
    if (!found)
        co_return;
    m_identities = std::move(found->identities);
    m_services = merged(std::move(found->services), m_services.valueBypassingBindings());
    m_lastUpdated = QDateTime::currentDateTimeUtc();
    m_isScanning = false;
    co_await runHealthChecks();
}

void ServiceStore::startScan(const Mailbox<ScanResult>::Sender &result)
{
    try {
        // The worker of the scan before has delivered its list, so replacing it does not wait.
        m_scanWorker =
            std::jthread([this, result](std::stop_token stop) { result.send(m_scan(std::move(stop))); });
    } catch (const std::system_error &) {
        result.send({});
    }
}

QCoro::Task<> ServiceStore::runHealthChecks()
{
    ProbePass pass(m_waits);
    pass.start(m_services.valueBypassingBindings(), m_check);
    while (pass.isUnderWay()) {
        const std::optional<ProbePass::Result> result = co_await pass.next();
        if (!result)
            co_return;
        applyHealth(*result);
    }
}

void ServiceStore::applyHealth(const ProbePass::Result &result)
{
    const QList<Service> &services = m_services.valueBypassingBindings();
    const auto found = std::ranges::find(services, result.key, keyOf);
    if (found == services.end())
        return;
    changeInPlace(m_services, [&result, row = found - services.begin()](QList<Service> &changed) {
        changed[row].health = result.health;
    });
}

void ServiceStore::startAutoRefresh()
{
    m_autoRefreshLoop.request_stop();
    m_autoRefreshLoop = std::stop_source();
    runAutoRefresh(m_autoRefreshLoop.get_token());
}

QCoro::Task<> ServiceStore::runAutoRefresh(std::stop_token stop)
{
    Pause pause(m_waits, m_autoRefreshInterval, stop);
    while (co_await pause.over())
        co_await refresh();
}

} // namespace portolan
