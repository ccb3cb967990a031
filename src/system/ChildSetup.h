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

/// What a program that this one starts inherits.
namespace portolan::ChildSetup {

/// Whether the environment entry `assignment` ("NAME=value") is passed on to other programs. All are but the
/// desktop's token to activate this program.
[[nodiscard]] bool isPassedOn(QByteArrayView assignment);

/// This program's environment as "NAME=value", as far as it is passed on.
[[nodiscard]] QList<QByteArray> environment();

/// A call of a program, prepared before the child exists: between vfork and exec nothing may be allocated.
class Call
{
public:
    /// `arguments` are passed unchanged, after the path as argv[0]; `environment` as "NAME=value".
    Call(const QString &path, const QStringList &arguments,
         QList<QByteArray> environment = ChildSetup::environment());
    Q_DISABLE_COPY_MOVE(Call)

    /// Replaces the calling process by the program, with default signals and the soft limit of descriptors
    /// that Portolan was started with, but no more than `maxDescriptors`. Returns only on failure.
    void execute(int maxDescriptors = INT_MAX) const;

private:
    QList<QByteArray> m_words;
    QList<QByteArray> m_environment;
    std::vector<char *> m_argumentPointers;
    std::vector<char *> m_environmentPointers;
};

/// Resets all signals to their default disposition and unblocks them. May be called between vfork and exec.
void takeDefaultSignals();

/// Blocks all signals in the calling thread for a scope. Until its exec a vforked child shares this program's
/// memory, so no signal handler may run in it.
class SignalsHeld
{
public:
    SignalsHeld();
    ~SignalsHeld();
    Q_DISABLE_COPY_MOVE(SignalsHeld)

private:
    sigset_t m_before;
};

/// Starts a process by vfork that calls `become(what)`, which must not return. Until its exec it shares this
/// program's memory while the calling thread waits: it may neither allocate nor lock. Returns its id, or -1
/// with errno set. Never inlined, so that no variable of the caller lives across the vfork.
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
