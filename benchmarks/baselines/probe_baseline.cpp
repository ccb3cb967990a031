// SPDX-License-Identifier: MIT
// probe_baseline ROUNDS PORT...: the minimum cost of probing every server: a connection, a HEAD request and
// the start of the answer, for all ports at once, on non-blocking sockets and one epoll.
#include "../Meter.h"

#include <cstring>
#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace portolan {

namespace {

// The connection is established when connect() returns: both ends are on this machine.
bool ask(int epoll, int port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in address{.sin_family = AF_INET, .sin_port = htons(std::uint16_t(port))};
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address);
    const std::string request = "HEAD / HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                                "\r\nUser-Agent: Portolan\r\nAccept: */*\r\n\r\n";
    epoll_event event{.events = EPOLLIN, .data = {.fd = socket}};
    return send(socket, request.data(), request.size(), MSG_NOSIGNAL) == ssize_t(request.size()) &&
           epoll_ctl(epoll, EPOLL_CTL_ADD, socket, &event) == 0;
}

/// Whether the answer is an HTTP response.
bool readAnswer(int socket)
{
    char answer[16 * 1024];
    const ssize_t length = recv(socket, answer, sizeof answer, 0);
    close(socket);
    return length >= 12 && std::memcmp(answer, "HTTP/1.", 7) == 0;
}

int probeAll(int count, char **ports)
{
    const int epoll = epoll_create1(EPOLL_CLOEXEC);
    int pending = 0;
    for (int i = 0; i < count; ++i)
        pending += ask(epoll, std::stoi(ports[i]));
    int healthy = 0;
    while (pending > 0) {
        epoll_event events[64];
        const int ready = epoll_wait(epoll, events, 64, 3000);
        if (ready <= 0)
            break;
        for (int i = 0; i < ready; ++i)
            healthy += readAnswer(events[i].data.fd);
        pending -= ready;
    }
    close(epoll);
    return healthy;
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    if (argc < 3)
        return 2;
    std::vector<Cost> rounds;
    int healthy = 0;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf([&] { healthy = probeAll(argc - 2, argv + 2); }));
    report("pass", median(rounds));
    std::printf("found %d\n", healthy);
}
