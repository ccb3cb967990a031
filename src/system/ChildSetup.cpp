// SPDX-License-Identifier: MIT
#include "ChildSetup.h"

#include "DescriptorLimit.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <utility>

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

ChildSetup::Call::Call(const QString &path, const QStringList &arguments, QList<QByteArray> environment)
    : m_words{QFile::encodeName(path)}
    , m_environment(std::move(environment))
{
    for (const QString &argument : arguments)
        m_words.append(QFile::encodeName(argument));
    const auto pointersTo = [](QList<QByteArray> &texts) {
        std::vector<char *> pointers;
        for (QByteArray &text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
        return pointers;
    };
    m_argumentPointers = pointersTo(m_words);
    m_environmentPointers = pointersTo(m_environment);
}

void ChildSetup::Call::execute(int maxDescriptors) const
{
    DescriptorLimit::restore(maxDescriptors);
    takeDefaultSignals();
    execve(m_argumentPointers.front(), m_argumentPointers.data(), m_environmentPointers.data());
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
