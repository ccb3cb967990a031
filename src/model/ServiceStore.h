// SPDX-License-Identifier: MIT
#pragma once

#include "ContinuousTimer.h"
#include "PortScanner.h"
#include "Service.h"
#include "ServiceKey.h"
#include "SortOrder.h"

#include <QDateTime>
#include <QFuture>
#include <QHash>
#include <QList>
#include <QObject>
#include <QProperty>
#include <QSet>
#include <QString>

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

namespace portolan {

class UserDefaults;

/// The state of the program: the current services, the search text, the user's settings, the list as shown,
/// and the refresh cycle. Created once and passed on by reference. Main thread only.
///
/// A property's signal is emitted if and only if its value changes, and after every change in place. No
/// property has a QBindable: its inline code calls a private function of Qt, which would tie a package to one
/// exact version of Qt.
class ServiceStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<portolan::Service> services READ services NOTIFY servicesChanged FINAL)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged FINAL)
    Q_PROPERTY(QDateTime lastUpdated READ lastUpdated NOTIFY lastUpdatedChanged FINAL)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged FINAL)
    Q_PROPERTY(portolan::SortOrder sortOrder READ sortOrder WRITE setSortOrder NOTIFY sortOrderChanged FINAL)
    Q_PROPERTY(QSet<qint64> pinnedPorts READ pinnedPorts NOTIFY pinnedPortsChanged FINAL)
    Q_PROPERTY(bool autoRefresh READ autoRefresh WRITE setAutoRefresh NOTIFY autoRefreshChanged FINAL)
    Q_PROPERTY(QList<portolan::Service> visible READ visible NOTIFY visibleChanged FINAL)
    Q_PROPERTY(int runningCount READ runningCount NOTIFY runningCountChanged FINAL)
    // For QML, where reading a list to count it leaves a copy until the next garbage collection.
    Q_PROPERTY(int serviceCount READ serviceCount NOTIFY servicesChanged FINAL)
    // QML cannot name enumerators that begin with a lower-case letter, so it uses the raw values of orders.
    Q_PROPERTY(QString sortOrderId READ sortOrderId WRITE setSortOrderId NOTIFY sortOrderChanged FINAL)
    Q_PROPERTY(QList<portolan::SortOrder> sortOrders READ sortOrders CONSTANT FINAL)

public:
    /// Finds the services of this machine. Blocks, so it runs on a thread of its own; a stop request makes it
    /// return early.
    using Scanner = std::function<ScanResult(std::stop_token)>;
    /// Probes one port without blocking. The future always finishes with a value, on any thread.
    using Checker = std::function<QFuture<Health>(qint64 port)>;

    /// How long auto-refresh pauses between two refreshes.
    static constexpr std::chrono::milliseconds usualInterval{5000};

    /// Loads the settings from `defaults`, which must outlive the store. Does not scan; starts the
    /// auto-refresh loop if the settings say so.
    ServiceStore(UserDefaults &defaults, Scanner scan, Checker check,
                 std::chrono::milliseconds autoRefreshInterval = usualInterval, QObject *parent = nullptr);
    /// Ends the scan. Answers to probes under way are ignored.
    ~ServiceStore() override;

    /// All services, in the scan's order.
    [[nodiscard]] QList<Service> services() const { return m_services.valueBypassingBindings(); }
    [[nodiscard]] int serviceCount() const { return int(services().size()); }
    /// The process of the service in the last scan; absent where the system does not tell. Of a service that
    /// is not listed any more: an identity that no process has, so that no other one can be taken for it.
    [[nodiscard]] std::optional<ProcessIdentity> identityOf(const Service &service) const;
    /// Whether a scan is under way.
    [[nodiscard]] bool isScanning() const { return m_isScanning.valueBypassingBindings(); }
    /// When the last scan was completed; invalid before.
    [[nodiscard]] QDateTime lastUpdated() const { return m_lastUpdated.valueBypassingBindings(); }
    /// The search text as typed. Never stored.
    [[nodiscard]] QString searchText() const { return m_searchText.valueBypassingBindings(); }
    void setSearchText(const QString &searchText) { m_searchText = searchText; }
    [[nodiscard]] SortOrder sortOrder() const { return m_sortOrder.valueBypassingBindings(); }
    void setSortOrder(SortOrder sortOrder);
    [[nodiscard]] QSet<qint64> pinnedPorts() const { return m_pinnedPorts.valueBypassingBindings(); }
    [[nodiscard]] bool autoRefresh() const { return m_autoRefresh.valueBypassingBindings(); }
    void setAutoRefresh(bool autoRefresh);

    /// The services that match the search text, pinned ones first, in the chosen order. Computed by every
    /// read.
    [[nodiscard]] QList<Service> visible() const;
    /// The number of all services that answer, whatever their status code. Computed by every read.
    [[nodiscard]] int runningCount() const;

    [[nodiscard]] QString sortOrderId() const { return sortOrder().rawValue(); }
    /// Ignored unless it is the raw value of an order.
    void setSortOrderId(const QString &rawValue);
    /// All orders, in the order in which they are offered.
    [[nodiscard]] static QList<SortOrder> sortOrders();

    /// Refreshes now and, with auto-refresh on, every five seconds from now on. To be called whenever the
    /// list is shown.
    Q_INVOKABLE void start();
    /// Scans and then probes every service. Does nothing while a scan is under way.
    Q_INVOKABLE void refresh();
    /// As `refresh()`. Calls `whenDone` after the last probe, or at once if there is nothing to do; not at
    /// all if the store is destroyed first.
    void refresh(std::function<void()> whenDone);
    /// Pins the service's port, or unpins it.
    Q_INVOKABLE void togglePin(const portolan::Service &service);
    /// Takes the service off the list until a scan finds it again.
    Q_INVOKABLE void removeService(const portolan::Service &service);
    /// To be called when the service has been told to end: takes it off the list at once, and refreshes when
    /// it should have ended.
    Q_INVOKABLE void expectEnd(const portolan::Service &service);

Q_SIGNALS:
    void servicesChanged();
    void isScanningChanged();
    void lastUpdatedChanged();
    void searchTextChanged();
    void sortOrderChanged();
    void pinnedPortsChanged();
    void autoRefreshChanged();
    void visibleChanged();
    void runningCountChanged();

    // Emitted by other threads, handled by this one.
    void scanEnded(QPrivateSignal);
    void probesAnswered(QPrivateSignal);

private:
    struct ProbePass;
    struct ProbeResult;
    struct ProbeResults;

    void load();
    void storePinnedPorts();
    void announceVisibleOrder();

    void finishScan();
    void runHealthChecks(std::function<void()> whenDone);
    void applyResults();
    void applyHealth(ServiceKey key, Health health);
    void startAutoRefresh();
    void stopAutoRefresh();
    void refreshAutomatically();

    UserDefaults &m_defaults;
    const Scanner m_scan;
    const Checker m_check;

    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, QList<Service>, m_services, &ServiceStore::servicesChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, bool, m_isScanning, &ServiceStore::isScanningChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, QDateTime, m_lastUpdated, &ServiceStore::lastUpdatedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, QString, m_searchText, &ServiceStore::searchTextChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, SortOrder, m_sortOrder, &ServiceStore::sortOrderChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ServiceStore, QSet<qint64>, m_pinnedPorts, &ServiceStore::pinnedPortsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ServiceStore, bool, m_autoRefresh, true,
                                         &ServiceStore::autoRefreshChanged)

    QHash<qint32, ProcessIdentity> m_identities; ///< of the processes in m_services, by pid

    std::function<void()> m_whenProbed; ///< callback of the refresh whose scan is under way
    std::list<ProbePass> m_passes;      ///< those with unanswered probes
    const std::shared_ptr<ProbeResults> m_results;

    const std::chrono::milliseconds m_autoRefreshInterval;
    ContinuousTimer m_autoRefreshTimer;
    int m_autoRefreshLoop = 0; ///< number of the current loop: an earlier one ends with its refresh

    ScanResult m_found;        ///< written by the scan's thread, read once that is joined
    std::jthread m_scanThread; ///< the last member: ends before what it uses
};

} // namespace portolan
