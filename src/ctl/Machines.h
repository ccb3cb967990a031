// SPDX-License-Identifier: MIT
#pragma once

#include "CommandLine.h"
#include "Machine.h"
#include "UserDefaults.h"

#include <QSet>
#include <QStringList>

#include <map>
#include <memory>

namespace portolan {

/// The machines of a command line: those named with --host, or else this one. Reads the user's settings and
/// never writes them. Main thread.
class Machines : public QObject
{
    Q_OBJECT

public:
    /// `probes`: whether the servers are probed. If all operands are ports or ids, only those ports of this
    /// machine are listed.
    Machines(const CommandLine &line, bool probes);

    [[nodiscard]] bool hasHosts() const { return m_hasHosts; }
    [[nodiscard]] bool probes() const { return m_probes; }
    /// The machine named `host`, which must be one of them; this machine's name is "".
    [[nodiscard]] Machine &machine(const QString &host) const { return *m_machines.at(host); }

    /// The servers of all of them, in any order.
    [[nodiscard]] QList<ListedService> services() const;
    /// The order on the command line, else the one in the settings.
    [[nodiscard]] SortOrder order() const { return m_order; }
    /// The time of the last refresh of any of them; invalid before the first.
    [[nodiscard]] QDateTime lastUpdated() const;
    [[nodiscard]] QStringList problems() const;
    /// Writes the problems that are new since the last call to standard error.
    void printNewProblems();

    /// Refreshes each of them once, waits until all have answered or failed, with a progress line on the
    /// terminal, and prints the problems. Returns the number of the signal that ended the wait, or 0.
    [[nodiscard]] int refreshOnce();
    /// See Machine::watch().
    void watch();

Q_SIGNALS:
    /// The same as each machine's.
    void changed();
    void refreshed();

private:
    UserDefaults m_defaults;
    const bool m_hasHosts;
    const bool m_probes;
    SortOrder m_order;
    std::map<QString, std::unique_ptr<Machine>>
        m_machines;                  ///< by host, which is the order of ties and problems
    QSet<QString> m_printedProblems; ///< those that still exist
};

} // namespace portolan
