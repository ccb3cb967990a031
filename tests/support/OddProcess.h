#pragma once

#include <QByteArray>
#include <QProcess>

namespace portolan {

/// A process of the test's own that becomes what it is told to be; odd_process.cpp has the orders.
class OddProcess
{
public:
    /// Runs `program`, which is odd_process or a copy of it.
    explicit OddProcess(const QString &program = OddProcess::program());
    ~OddProcess();
    Q_DISABLE_COPY_MOVE(OddProcess)

    [[nodiscard]] static QString program();

    [[nodiscard]] int pid() const { return int(m_process.processId()); }
    /// Has an order carried out and returns the answer; throws when that fails.
    QByteArray tell(const QByteArray &order);
    /// Kills it, without notice.
    void kill();

private:
    QProcess m_process;
};

} // namespace portolan
