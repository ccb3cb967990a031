// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include <climits>
#include <csignal>
#include <vector>

#include <unistd.h>

/// What a program that this one starts gets of it, and what not.
namespace portolan::ChildSetup {

/// Whether the environment entry `assignment` ("NAME=value") is for other programs too, as all are that the
/// user has set, and not the desktop's token to activate this one.
[[nodiscard]] bool isPassedOn(QByteArrayView assignment);

/// This program's environment as "NAME=value", as far as it is passed on.
[[nodiscard]] QList<QByteArray> environment();

/// A call of a program, laid out before the child exists: between vfork and exec nothing may be allocated.
class Call
{
public:
    /// `arguments` stand as they are behind the path as argv[0]; `environment` as "NAME=value".
    Call(const QString &path, const QStringList &arguments,
         QList<QByteArray> environment = ChildSetup::environment());
    Q_DISABLE_COPY_MOVE(Call)

    /// Makes the calling process the program, with default signals and the soft limit of descriptors that
    /// this one was started with, but no more than `maxDescriptors`. Returns only if that is not possible.
    void execute(int maxDescriptors = INT_MAX) const;

private:
    QList<QByteArray> m_words;
    QList<QByteArray> m_environment;
    std::vector<char *> m_argumentPointers;
    std::vector<char *> m_environmentPointers;
};

/// Gives all signals their default disposition and blocks none. May be called between vfork and exec.
void takeDefaultSignals();

/// Holds all signals back from the calling thread for a scope. Until its exec a vforked child shares our
/// memory: no handler of ours may run there.
class SignalsHeld
{
public:
    SignalsHeld();
    ~SignalsHeld();
    Q_DISABLE_COPY_MOVE(SignalsHeld)

private:
    sigset_t m_before;
};

/// Starts a process in which `become(what)` is called, which must not return. Until its exec it shares our
/// memory while the calling thread waits: it may neither allocate nor lock. Returns its id, or -1 with errno.
/// A function of its own, so that no variable of the caller's lives across the vfork.
template <typename What>
[[gnu::noinline]] pid_t startSharing(void (*become)(const What &), const What &what)
{
    const SignalsHeld held;
    const pid_t pid = vfork();
    if (pid == 0)
        become(what);
    return pid;
}

} // namespace portolan::ChildSetup
