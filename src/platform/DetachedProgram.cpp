#include "DetachedProgram.h"

#include "DetachedProgram_p.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ranges>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What execve wants, made before the fork: the child may not allocate.
struct Call
{
    QByteArray path;
    QList<QByteArray> words;
    std::vector<char *> arguments;
    std::vector<char *> environment;
};

Call makeCall(const QString &program, const QStringList &arguments)
{
    Call call;
    call.path = QFile::encodeName(program);
    call.words.append(call.path);
    for (const QString &argument : arguments)
        call.words.append(QFile::encodeName(argument));
    for (QByteArray &word : call.words)
        call.arguments.push_back(word.data());
    call.arguments.push_back(nullptr);
    for (char **entry = environ; entry && *entry; ++entry) {
        if (DetachedProgram::isPassedOn(*entry))
            call.environment.push_back(*entry);
    }
    call.environment.push_back(nullptr);
    return call;
}

/// Holds signals back while parent and child share their memory: a handler must not run in the child.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    Q_DISABLE_COPY_MOVE(SignalsHeld)

private:
    sigset_t m_before;
};

void takeDefaultSignals()
{
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        sigaction(signal, &byDefault, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void dropDescriptors()
{
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, standard);
    closefrom(STDERR_FILENO + 1);
}

[[noreturn]] void becomeProgram(const Call &call)
{
    takeDefaultSignals();
    dropDescriptors();
    execve(call.path.constData(), call.arguments.data(), call.environment.data());
    _exit(127);
}

/// The process in the middle: the program becomes an orphan by its end, and so somebody else's to collect.
[[noreturn]] void leaveProgramBehind(const Call &call)
{
    setsid();
    if (vfork() == 0)
        becomeProgram(call);
    _exit(0);
}

} // namespace

bool DetachedProgram::isPassedOn(QByteArrayView assignment)
{
    // These belong to the whole session: without them Qt programs lose the user's input method, style and
    // scale.
    constexpr std::array session{
        "QT_ACCESSIBILITY"_L1,        "QT_AUTO_SCREEN_SCALE_FACTOR"_L1, "QT_IM_MODULE"_L1,
        "QT_IM_MODULES"_L1,           "QT_QPA_PLATFORMTHEME"_L1,        "QT_SCALE_FACTOR"_L1,
        "QT_SCREEN_SCALE_FACTORS"_L1, "QT_STYLE_OVERRIDE"_L1,
    };
    constexpr std::array ownPrefixes{"QT_", "QML_", "QML2_", "QSG_"};
    constexpr std::array tokens{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

    const QByteArrayView name = assignment.first(std::max<qsizetype>(0, assignment.indexOf('=')));
    if (std::ranges::find(tokens, name) != tokens.end())
        return false;
    if (std::ranges::find(session, QLatin1StringView(name)) != session.end())
        return true;
    return std::ranges::none_of(ownPrefixes, [&](const char *prefix) { return name.startsWith(prefix); });
}

void DetachedProgram::start(const QString &program, const QStringList &arguments)
{
    const Call call = makeCall(program, arguments);
    const SignalsHeld held;
    const pid_t middle = vfork();
    if (middle == 0)
        leaveProgramBehind(call);
    while (middle > 0 && waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
    }
}

QString DetachedProgram::find(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}
