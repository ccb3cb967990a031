#include "Launches.h"

#include "Shell.h"

#include <system_error>

namespace portolan {

void Launches::start(const QString &program, const QStringList &arguments)
{
    m_launches.remove_if([](const Launch &launch) { return launch.isOver.load(); });
    Launch &launch = m_launches.emplace_back();
    try {
        launch.thread =
            std::jthread([program, arguments, &isOver = launch.isOver](const std::stop_token &stop) {
                (void)Shell::run(program, arguments, {.stop = stop, .isUsersProgram = true});
                isOver = true;
            });
    } catch (const std::system_error &) {
        m_launches.pop_back();
    }
}

} // namespace portolan
