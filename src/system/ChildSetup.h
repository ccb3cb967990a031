#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <csignal>
#include <vector>

/// What a program that this one starts gets of it, and what not.
namespace ChildSetup {

/// Whether the environment entry `assignment` ("NAME=value") is for other programs too: not how Qt draws this
/// one, and not the desktop's token to activate it.
[[nodiscard]] bool isPassedOn(QByteArrayView assignment);

/// This program's environment as "NAME=value", as far as it is passed on.
[[nodiscard]] QList<QByteArray> environment();

/// The texts as execve takes them, for as long as `texts` lives unchanged.
[[nodiscard]] std::vector<char *> pointers(QList<QByteArray> &texts);

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

} // namespace ChildSetup
