// SPDX-License-Identifier: MIT
// Executes commands that give this process the properties a test needs: one command per line on standard
// input, one line of reply each, until the end of input. Its children exit with it.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace portolan {

namespace {

using Reply = std::string;
using Command = std::function<Reply(std::istringstream &)>;

int lastSocket = -1;

[[noreturn]] void fail(const char *what)
{
    std::perror(what);
    std::exit(1);
}

int checked(int result, const char *what)
{
    if (result < 0)
        fail(what);
    return result;
}

template <typename Value = std::string>
Value argument(std::istringstream &line)
{
    Value value{};
    line >> value;
    return value;
}

/// An argument in hexadecimal, as names and folders may contain any byte.
std::string bytes(std::istringstream &line)
{
    const std::string hex = argument(line);
    std::string text;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        text += char(std::stoi(hex.substr(i, 2), nullptr, 16));
    return text;
}

int boundSocket(const std::string &host, bool isIpv6Only)
{
    sockaddr_in6 ipv6{.sin6_family = AF_INET6};
    if (inet_pton(AF_INET6, host.c_str(), &ipv6.sin6_addr) == 1) {
        const int socket = checked(::socket(AF_INET6, SOCK_STREAM, 0), "socket");
        const int only = isIpv6Only;
        checked(setsockopt(socket, IPPROTO_IPV6, IPV6_V6ONLY, &only, sizeof only), "IPV6_V6ONLY");
        checked(bind(socket, reinterpret_cast<const sockaddr *>(&ipv6), sizeof ipv6), "bind");
        return socket;
    }
    sockaddr_in ipv4{.sin_family = AF_INET};
    inet_pton(AF_INET, host.c_str(), &ipv4.sin_addr);
    const int socket = checked(::socket(AF_INET, SOCK_STREAM, 0), "socket");
    checked(bind(socket, reinterpret_cast<const sockaddr *>(&ipv4), sizeof ipv4), "bind");
    return socket;
}

/// listen HOST [v6only]
Reply listenAt(std::istringstream &line)
{
    const std::string host = argument(line);
    lastSocket = boundSocket(host, argument(line) == "v6only");
    checked(listen(lastSocket, 16), "listen");
    return {};
}

/// connect: opens a connection to the last socket, which is never accepted
Reply connectToSelf(std::istringstream &)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    checked(getsockname(lastSocket, reinterpret_cast<sockaddr *>(&address), &length), "getsockname");
    const int client = checked(socket(address.ss_family, SOCK_STREAM, 0), "socket");
    checked(connect(client, reinterpret_cast<const sockaddr *>(&address), length), "connect");
    return {};
}

/// copy NUMBER: duplicates the last socket to that descriptor; move NUMBER: also closes the old one
Reply copySocket(std::istringstream &line)
{
    checked(dup2(lastSocket, argument<int>(line)), "dup2");
    return {};
}

Reply moveSocket(std::istringstream &line)
{
    const int old = lastSocket;
    lastSocket = checked(dup2(old, argument<int>(line)), "dup2");
    close(old);
    return {};
}

Reply closeSocket(std::istringstream &)
{
    close(lastSocket);
    return {};
}

Reply rename(std::istringstream &line)
{
    prctl(PR_SET_NAME, bytes(line).c_str());
    return {};
}

Reply changeFolder(std::istringstream &line)
{
    checked(chdir(bytes(line).c_str()), "chdir");
    return {};
}

/// thread: starts a thread and replies its id
Reply startThread(std::istringstream &)
{
    int ends[2];
    checked(pipe(ends), "pipe");
    std::thread([end = ends[1]] {
        prctl(PR_SET_NAME, "thread) Z (");
        const auto id = pid_t(syscall(SYS_gettid));
        checked(int(write(end, &id, sizeof id)), "write");
        pause();
    }).detach();
    pid_t id = 0;
    checked(int(read(ends[0], &id, sizeof id)), "read");
    close(ends[0]);
    close(ends[1]);
    return std::to_string(id);
}

/// fork: starts a child that inherits all descriptors; zombie: one that has exited and is not reaped
Reply startChild(bool lives)
{
    const pid_t parent = getpid();
    const pid_t child = checked(fork(), "fork");
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (lives && getppid() == parent)
            pause();
        _exit(0);
    }
    if (!lives) {
        siginfo_t info;
        checked(waitid(P_PID, id_t(child), &info, WEXITED | WNOWAIT), "waitid");
    }
    return std::to_string(child);
}

/// user ID: changes to that user
Reply becomeUser(std::istringstream &line)
{
    const auto id = argument<unsigned>(line);
    checked(setgroups(0, nullptr), "setgroups");
    checked(setgid(id), "setgid");
    checked(setuid(id), "setuid");
    prctl(PR_SET_DUMPABLE, 1);
    return {};
}

/// groups COUNT: joins that many groups
Reply joinGroups(std::istringstream &line)
{
    std::vector<gid_t> groups(argument<size_t>(line));
    std::iota(groups.begin(), groups.end(), gid_t(1'000'000'000));
    checked(setgroups(groups.size(), groups.data()), "setgroups");
    return {};
}

/// compute MILLISECONDS: uses that much CPU time
Reply compute(std::istringstream &line)
{
    const std::clock_t end = std::clock() + argument<long>(line) * CLOCKS_PER_SEC / 1000;
    while (std::clock() < end) {
    }
    return {};
}

const std::map<std::string, Command> commands = {
    {"listen", listenAt},
    {"connect", connectToSelf},
    {"copy", copySocket},
    {"move", moveSocket},
    {"close", closeSocket},
    {"name", rename},
    {"folder", changeFolder},
    {"thread", startThread},
    {"fork", [](std::istringstream &) { return startChild(true); }},
    {"zombie", [](std::istringstream &) { return startChild(false); }},
    {"user", becomeUser},
    {"groups", joinGroups},
    {"compute", compute},
};

} // namespace

} // namespace portolan

int main()
{
    using namespace portolan;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        const auto command = commands.find(argument(words));
        if (command == commands.end())
            return 2;
        // Not written before the command has run: it may fork, and buffered output with it.
        const Reply reply = command->second(words);
        std::cout << "done " << reply << std::endl;
    }
    _exit(0); // without waiting for its threads
}
