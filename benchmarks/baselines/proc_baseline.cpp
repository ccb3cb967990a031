// SPDX-License-Identifier: MIT
// proc_baseline ROUNDS: finds every listening server with plain system calls, once in a fresh process and
// ROUNDS times more: one netlink dump of the sockets, one listing of the descriptors of every process, one
// readlink for each of them, and two files for each owner.
#include "../Meter.h"

#include <charconv>
#include <cstring>
#include <string>
#include <unordered_set>

#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace portolan {

namespace {

/// Adds the inodes of one family's listening sockets.
void readSockets(int netlink, int family, std::unordered_set<unsigned> &inodes)
{
    struct
    {
        nlmsghdr header = {.nlmsg_len = sizeof(nlmsghdr) + sizeof(inet_diag_req_v2),
                           .nlmsg_type = SOCK_DIAG_BY_FAMILY,
                           .nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP};
        inet_diag_req_v2 query = {.sdiag_protocol = IPPROTO_TCP, .idiag_states = 1U << TCP_LISTEN};
    } request;
    request.query.sdiag_family = std::uint8_t(family);
    send(netlink, &request, sizeof request, 0);
    alignas(nlmsghdr) char buffer[32 * 1024];
    for (ssize_t left = 0; (left = recv(netlink, buffer, sizeof buffer, 0)) > 0;) {
        const char *at = buffer;
        while (left >= ssize_t(sizeof(nlmsghdr))) {
            nlmsghdr header;
            std::memcpy(&header, at, sizeof header);
            if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY)
                return;
            inet_diag_msg message;
            std::memcpy(&message, at + sizeof header, sizeof message);
            inodes.insert(message.idiag_inode);
            at += NLMSG_ALIGN(header.nlmsg_len);
            left -= ssize_t(NLMSG_ALIGN(header.nlmsg_len));
        }
    }
}

/// Whether the process whose folder is `process` holds one of the sockets.
bool holdsOne(int process, const std::unordered_set<unsigned> &inodes)
{
    constexpr size_t headLength = std::char_traits<char>::length("socket:[");
    const int folder = openat(process, "fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *const descriptors = folder < 0 ? nullptr : fdopendir(folder);
    if (!descriptors)
        return false;
    bool found = false;
    while (const dirent *entry = readdir(descriptors)) {
        char link[64];
        const ssize_t length = readlinkat(folder, entry->d_name, link, sizeof link);
        unsigned inode = 0;
        if (length > ssize_t(headLength) && std::memcmp(link, "socket:[", headLength) == 0) {
            std::from_chars(link + headLength, link + length, inode);
            found = found || inodes.contains(inode);
        }
    }
    closedir(descriptors);
    return found;
}

size_t readFacts(int process)
{
    char buffer[4096];
    const ssize_t link = readlinkat(process, "cwd", buffer, sizeof buffer);
    const int file = openat(process, "stat", O_RDONLY | O_CLOEXEC);
    const ssize_t text = read(file, buffer, sizeof buffer);
    close(file);
    return size_t(link) + size_t(text);
}

size_t scan()
{
    std::unordered_set<unsigned> inodes;
    const int netlink = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    readSockets(netlink, AF_INET, inodes);
    readSockets(netlink, AF_INET6, inodes);
    close(netlink);

    size_t owners = 0;
    DIR *const processes = opendir("/proc");
    while (const dirent *entry = readdir(processes)) {
        if (entry->d_name[0] < '0' || entry->d_name[0] > '9')
            continue;
        const int process = openat(dirfd(processes), entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (process < 0)
            continue;
        if (holdsOne(process, inodes) && readFacts(process) > 0)
            ++owners;
        close(process);
    }
    closedir(processes);
    return owners;
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    if (argc != 2)
        return 2;
    size_t owners = 0;
    const auto run = [&owners] { owners = scan(); };
    report("first", costOf(run));
    std::vector<Cost> rounds;
    for (int left = std::stoi(argv[1]); left > 0; --left)
        rounds.push_back(costOf(run));
    if (!rounds.empty())
        report("baseline", median(rounds));
    std::printf("found %zu\n", owners);
}
