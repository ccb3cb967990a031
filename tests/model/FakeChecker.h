// SPDX-License-Identifier: MIT
#pragma once

#include "Health.h"

#include <QFuture>
#include <QPromise>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace portolan {

/// A checker whose probes wait until the test answers them, in any order.
class FakeChecker
{
public:
    /// To be given to the store; refers to this object.
    std::function<QFuture<Health>(qint64)> function()
    {
        return [this](qint64 port) {
            auto &probe = m_probes.emplace_back(Probe{port, std::make_unique<QPromise<Health>>()});
            probe.promise->start();
            return probe.promise->future();
        };
    }

    /// Probes asked for so far, by port and in their order.
    std::vector<qint64> ports() const
    {
        std::vector<qint64> ports;
        for (const Probe &probe : m_probes)
            ports.push_back(probe.port);
        return ports;
    }

    /// Answers the probe with this number, counted from 0 over all passes.
    void answer(size_t probe, Health health)
    {
        const auto promise = std::move(m_probes.at(probe).promise);
        promise->addResult(health);
        promise->finish();
    }

    /// Answers all pending probes.
    void answerRest(Health health)
    {
        for (size_t probe = 0; probe < m_probes.size(); ++probe) {
            if (m_probes[probe].promise)
                answer(probe, health);
        }
    }

private:
    struct Probe
    {
        qint64 port;
        std::unique_ptr<QPromise<Health>> promise;
    };

    std::vector<Probe> m_probes;
};

} // namespace portolan
