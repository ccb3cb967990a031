#pragma once

#include <QStringList>

#include <atomic>
#include <list>
#include <thread>

namespace portolan {

/// Runs the user's programs by Shell::run without blocking who asks for it: each on a thread that ends with
/// its program. Destroying it ends the waiting, not the programs. Main thread.
class Launches
{
public:
    /// Runs the executable at the absolute path `program`. What cannot be started is left.
    void start(const QString &program, const QStringList &arguments);

private:
    struct Launch
    {
        std::atomic<bool> isOver = false;
        std::jthread thread; ///< the last member: ends before what it uses
    };

    std::list<Launch> m_launches;
};

} // namespace portolan
