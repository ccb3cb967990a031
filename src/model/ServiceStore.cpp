// SPDX-License-Identifier: MIT
#include "ServiceStore.h"

#include "UserDefaults.h"
#include "VisibleList.h"

#include <QHash>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <limits>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

using namespace std::chrono_literals;

namespace portolan {

namespace {

constexpr QStringView sortOrderKey = u"sortOrder";
constexpr QStringView pinnedPortsKey = u"pinnedPorts";
constexpr QStringView autoRefreshKey = u"autoRefresh";

constexpr auto timeToEnd = 1400ms; // a scan at once would still see the listener of a process that ends

/// `found` with the health that each service had in `known`; if two known services have the same key, the
/// later one counts.
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

/// Changes a property's value in place and always notifies. The value is taken out of the property meanwhile,
/// so that changing one element does not copy a list.
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

/// The concurrent probes of all services.
struct ServiceStore::ProbePass
{
    qsizetype unanswered;
    std::function<void()> whenDone;
};

struct ServiceStore::ProbeResult
{
    ProbePass *pass; ///< valid until its last result is applied
    ServiceKey key;
    Health health;
};

/// The results to be applied, in the order of completion. The threads that answer probes share it with the
/// store, which they may outlive. It is guarded by a std::mutex, as the thread sanitizer does not know Qt's.
struct ServiceStore::ProbeResults
{
    std::mutex mutex;
    std::deque<ProbeResult> waiting;
    ServiceStore *store; ///< null once it is destroyed

    void add(const ProbeResult &result)
    {
        const std::lock_guard lock(mutex);
        if (!store)
            return;
        waiting.push_back(result);
        // One event for all results that arrive until it is handled.
        if (waiting.size() == 1)
            Q_EMIT store->probesAnswered(QPrivateSignal());
    }

    std::optional<ProbeResult> take()
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty())
            return std::nullopt;
        const ProbeResult result = waiting.front();
        waiting.pop_front();
        return result;
    }

    void detach()
    {
        const std::lock_guard lock(mutex);
        store = nullptr;
        waiting.clear();
    }
};

ServiceStore::ServiceStore(UserDefaults &defaults, Scanner scan, Checker check,
                           std::chrono::milliseconds autoRefreshInterval, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_scan(std::move(scan))
    , m_check(std::move(check))
    , m_results(new ProbeResults{.store = this})
    , m_autoRefreshInterval(autoRefreshInterval)
{
    connect(this, &ServiceStore::servicesChanged, this, &ServiceStore::visibleChanged);
    connect(this, &ServiceStore::servicesChanged, this, &ServiceStore::runningCountChanged);
    connect(this, &ServiceStore::searchTextChanged, this, &ServiceStore::visibleChanged);
    connect(this, &ServiceStore::pinnedPortsChanged, this, &ServiceStore::announceVisibleOrder);
    connect(this, &ServiceStore::sortOrderChanged, this, &ServiceStore::announceVisibleOrder);
    connect(this, &ServiceStore::scanEnded, this, &ServiceStore::finishScan, Qt::QueuedConnection);
    connect(this, &ServiceStore::probesAnswered, this, &ServiceStore::applyResults, Qt::QueuedConnection);
    connect(&m_autoRefreshTimer, &ContinuousTimer::timeout, this, &ServiceStore::refreshAutomatically);
    load();
}

ServiceStore::~ServiceStore()
{
    m_results->detach();
}

std::optional<ProcessIdentity> ServiceStore::identityOf(const Service &service) const
{
    if (const auto found = m_identities.find(service.pid); found != m_identities.end())
        return *found;
    const QList<Service> services = this->services();
    if (std::ranges::find(services, service.pid, &Service::pid) != services.end())
        return std::nullopt;
    return ProcessIdentity{service.pid, std::numeric_limits<quint64>::max()};
}

void ServiceStore::load()
{
    if (const auto stored = m_defaults.string(sortOrderKey)) {
        if (const auto order = SortOrder::fromRawValue(*stored))
            setSortOrder(*order);
    }
    if (const auto stored = m_defaults.integers(pinnedPortsKey)) {
        m_pinnedPorts = QSet<qint64>(stored->begin(), stored->end());
        storePinnedPorts();
    }
    if (const auto stored = m_defaults.boolean(autoRefreshKey))
        setAutoRefresh(*stored);
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
    // Sorted, so that the same pins always give the same file.
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
        stopAutoRefresh();
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

void ServiceStore::expectEnd(const Service &service)
{
    removeService(service);
    QTimer::singleShot(timeToEnd, Qt::PreciseTimer, this, [this] { refresh(); });
}

QList<Service> ServiceStore::visible() const
{
    return VisibleList::of(services(), {searchText(), pinnedPorts(), sortOrder()});
}

int ServiceStore::runningCount() const
{
    return int(
        std::ranges::count_if(m_services.valueBypassingBindings(), &Health::isHealthy, &Service::health));
}

void ServiceStore::announceVisibleOrder()
{
    if (VisibleList::hasOrder(services(), searchText()))
        Q_EMIT visibleChanged();
}

void ServiceStore::start()
{
    refresh();
    if (m_autoRefresh.valueBypassingBindings())
        startAutoRefresh();
}

void ServiceStore::refresh()
{
    refresh([] {});
}

void ServiceStore::refresh(std::function<void()> whenDone)
{
    if (m_isScanning.valueBypassingBindings())
        return whenDone();
    m_isScanning = true;
    m_whenProbed = std::move(whenDone);
    try {
        m_scanThread = std::jthread([this](std::stop_token stop) {
            m_found = m_scan(std::move(stop));
            Q_EMIT scanEnded(QPrivateSignal());
        });
    } catch (const std::system_error &) {
        Q_EMIT scanEnded(QPrivateSignal()); // a scan that cannot be started finds nothing
    }
}

void ServiceStore::finishScan()
{
    // The thread has finished its work, so this does not block.
    if (m_scanThread.joinable())
        m_scanThread.join();
    const auto whenProbed = std::exchange(m_whenProbed, nullptr);
    ScanResult found = std::exchange(m_found, {});
    m_identities = std::move(found.identities);
    m_services = merged(std::move(found.services), m_services.valueBypassingBindings());
    m_lastUpdated = QDateTime::currentDateTimeUtc();
    m_isScanning = false;
    runHealthChecks(whenProbed);
}

void ServiceStore::runHealthChecks(std::function<void()> whenDone)
{
    const QList<Service> services = m_services.valueBypassingBindings();
    if (services.isEmpty())
        return whenDone();
    ProbePass &pass = m_passes.emplace_back(ProbePass{services.size(), std::move(whenDone)});
    for (const Service &service : services) {
        // On the answering thread: a QFutureWatcher would post five events to this one for each result.
        m_check(service.port)
            .then(QtFuture::Launch::Sync, [results = m_results, &pass, key = keyOf(service)](Health health) {
                results->add({&pass, key, health});
            });
    }
}

void ServiceStore::applyResults()
{
    while (const std::optional<ProbeResult> result = m_results->take()) {
        applyHealth(result->key, result->health);
        if (--result->pass->unanswered > 0)
            continue;
        const auto whenDone = std::move(result->pass->whenDone);
        m_passes.remove_if([&](const ProbePass &pass) { return &pass == result->pass; });
        whenDone();
    }
}

void ServiceStore::applyHealth(ServiceKey key, Health health)
{
    const QList<Service> &services = m_services.valueBypassingBindings();
    const auto found = std::ranges::find(services, key, keyOf);
    if (found == services.end())
        return;
    changeInPlace(m_services, [health, row = found - services.begin()](QList<Service> &changed) {
        changed[row].health = health;
    });
}

void ServiceStore::startAutoRefresh()
{
    ++m_autoRefreshLoop;
    m_autoRefreshTimer.start(m_autoRefreshInterval);
}

void ServiceStore::stopAutoRefresh()
{
    ++m_autoRefreshLoop;
    m_autoRefreshTimer.stop();
}

void ServiceStore::refreshAutomatically()
{
    refresh([this, loop = m_autoRefreshLoop] {
        if (loop == m_autoRefreshLoop)
            m_autoRefreshTimer.start(m_autoRefreshInterval);
    });
}

} // namespace portolan
