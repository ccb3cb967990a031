#include "ChildSetup.h"

#include <algorithm>
#include <array>

#include <unistd.h>

using namespace Qt::StringLiterals;

bool ChildSetup::isPassedOn(QByteArrayView assignment)
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

QList<QByteArray> ChildSetup::environment()
{
    QList<QByteArray> entries;
    for (char **entry = environ; entry && *entry; ++entry) {
        if (isPassedOn(*entry))
            entries.append(*entry);
    }
    return entries;
}

std::vector<char *> ChildSetup::pointers(QList<QByteArray> &texts)
{
    std::vector<char *> list;
    list.reserve(size_t(texts.size()) + 1);
    for (QByteArray &text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

void ChildSetup::takeDefaultSignals()
{
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        sigaction(signal, &byDefault, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

ChildSetup::SignalsHeld::SignalsHeld()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &m_before);
}

ChildSetup::SignalsHeld::~SignalsHeld()
{
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}
