// SPDX-License-Identifier: MIT
#pragma once

#include "FolderReader.h"
#include "HealthChecker.h"
#include "Machine.h"
#include "ProcessSource.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <memory>
#include <optional>

namespace portolan {

class ProcessHandle;

/// This machine.
class LocalMachine : public Machine
{
    Q_OBJECT

public:
    /// The pins are those of `defaults`; `probes`: whether the servers are probed. `ports` limits the list to
    /// these ports; absent: to none.
    LocalMachine(UserDefaults &defaults, bool probes, std::optional<QSet<qint64>> ports = {});

    [[nodiscard]] QList<ListedService> services() const override;
    [[nodiscard]] QDateTime lastUpdated() const override { return m_store.lastUpdated(); }
    void refresh() override;
    void watch() override;
    void stop(const ListedService &listed, const Report &report) override;
    void reach(const Service &service, const UseAddress &use) override;

private:
    std::unique_ptr<ProcessSource> m_source;
    FolderReader m_files;
    HealthChecker m_checker;
    ServiceStore m_store;
    QTimer m_next;
    QHash<qint32, std::weak_ptr<const ProcessHandle>> m_stopping; ///< processes told to end, by pid
};

} // namespace portolan
