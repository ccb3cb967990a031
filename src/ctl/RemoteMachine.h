// SPDX-License-Identifier: MIT
#pragma once

#include "Machine.h"
#include "PortForward.h"
#include "SshRun.h"

#include <QHash>
#include <QTimer>

#include <chrono>
#include <memory>

namespace portolan {

/// Another machine, whose portolanctl is run by the user's ssh. What it sends is accepted only if it conforms
/// to the schema.
class RemoteMachine : public Machine
{
    Q_OBJECT

public:
    /// `host`: its name for ssh; `probes`: whether its servers are probed.
    RemoteMachine(const QString &host, bool probes);

    [[nodiscard]] QList<ListedService> services() const override;
    [[nodiscard]] QDateTime lastUpdated() const override { return m_lastUpdated; }
    [[nodiscard]] QString problem() const override { return m_problem; }
    void refresh() override;
    void watch() override;
    void stop(const ListedService &listed, const Report &report) override;
    void reach(const Service &service, const UseAddress &use) override;

private:
    void run(const QString &command);
    [[nodiscard]] bool accept(const QByteArray &json);
    void fail(const QString &problem);
    [[nodiscard]] QString withHost(const QString &problem) const;

    const QString m_host;
    const bool m_probes;
    std::unique_ptr<SshRun> m_run;
    QList<ListedService> m_services;
    QDateTime m_lastUpdated;
    QString m_problem;
    std::chrono::milliseconds m_retryDelay;
    QTimer m_retry;
    QTimer m_aging;
    QHash<qint64, PortForward *> m_forwards; ///< by the port there
};

} // namespace portolan
