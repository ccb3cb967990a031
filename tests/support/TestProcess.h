#pragma once

#include <QByteArray>
#include <QProcess>

namespace portolan {

/// A process of the test's own that becomes what it is told to be; test_process.cpp has the orders.
class TestProcess
{
public:
    TestProcess();
    ~TestProcess();
    Q_DISABLE_COPY_MOVE(TestProcess)

    [[nodiscard]] int pid() const { return int(m_process.processId()); }
    /// Has an order carried out and returns the answer; throws when that fails.
    QByteArray tell(const QByteArray &order);
    /// Kills it, without notice.
    void kill();

private:
    QProcess m_process;
};

} // namespace portolan
