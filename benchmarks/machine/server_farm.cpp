// SPDX-License-Identifier: MIT
// server_farm FOLDER...: one development server per folder, each a process of its own that answers every HTTP
// request with an empty 200. Prints their ports on one line and lives until the end of standard input.
#include "Children.h"

#include <cstring>
#include <string>

#include <netinet/in.h>
#include <sys/socket.h>

namespace portolan {

namespace {

constexpr char answer[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

sockaddr_in boundAddress(int socket)
{
    sockaddr_in address{.sin_family = AF_INET};
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(socket, reinterpret_cast<sockaddr *>(&address), length) != 0 || listen(socket, 64) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        std::perror("listen");
        std::exit(1);
    }
    return address;
}

void serve(const char *folder, int listener)
{
    prctl(PR_SET_NAME, "node");
    if (chdir(folder) != 0)
        return;
    for (;;) {
        const int client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        char request[4096];
        if (recv(client, request, sizeof request, 0) > 0)
            send(client, answer, std::strlen(answer), MSG_NOSIGNAL);
        close(client);
    }
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    Children children;
    std::string ports;
    for (int i = 1; i < argc; ++i) {
        const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ports += std::to_string(ntohs(boundAddress(listener).sin_port)) + ' ';
        children.start([folder = argv[i], listener] { serve(folder, listener); });
        close(listener); // so that each socket has one owner
    }
    children.standUntilTold(ports.c_str());
}
