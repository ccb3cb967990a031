// SPDX-License-Identifier: MIT
#include "ChildSetup.h"

#include <algorithm>
#include <array>

#include <unistd.h>

namespace portolan {

bool ChildSetup::isPassedOn(QByteArrayView assignment)
{
    constexpr std::array tokens{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};
    const QByteArrayView name = assignment.first(std::max<qsizetype>(0, assignment.indexOf('=')));
    return std::ranges::find(tokens, name) == tokens.end();
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

} // namespace portolan
