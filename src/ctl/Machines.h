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

/// The machines that a command line is about: those named with --host, or else this one. With the user's
/// settings, which are read and never written. Main thread.
class Machines : public QObject
{
    Q_OBJECT

public:
    /// `probes`: whether the servers are asked for their health. Where all operands are ports or ids, this
    /// machine is asked about those ports alone.
    Machines(const CommandLine &line, bool probes);

    [[nodiscard]] bool hasHosts() const { return m_hasHosts; }
    [[nodiscard]] bool probes() const { return m_probes; }
    /// The one called `host`, which is one of them; this machine is called "".
    [[nodiscard]] Machine &machine(const QString &host) const { return *m_machines.at(host); }

    /// The servers of all of them, in any order.
    [[nodiscard]] QList<ListedService> services() const;
    /// As on the command line or else in the settings.
    [[nodiscard]] SortOrder order() const { return m_order; }
    /// When one of them was last looked at; invalid before.
    [[nodiscard]] QDateTime lastUpdated() const;
    [[nodiscard]] QStringList problems() const;
    /// Writes those to standard error that have come since the last call.
    void printNewProblems();

    /// Looks at each of them once, waits until all have answered or failed to, with a line on the terminal
    /// meanwhile, and prints the problems. Returns the number of the signal that ended the wait, or 0.
    [[nodiscard]] int lookOnce();
    /// See Machine::watch().
    void watch();

Q_SIGNALS:
    /// The same as each machine's.
    void changed();
    void looked();

private:
    UserDefaults m_defaults;
    const bool m_hasHosts;
    const bool m_probes;
    SortOrder m_order;
    std::map<QString, std::unique_ptr<Machine>>
        m_machines;                  ///< by host, in the order in which ties and problems come
    QSet<QString> m_printedProblems; ///< those that still last
};

} // namespace portolan
