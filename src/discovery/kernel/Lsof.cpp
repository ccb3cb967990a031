#include "Lsof.h"

#include "Lsof_p.h"
#include "ProcFs.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <mutex>

#include <arpa/inet.h>
#include <climits>
#include <locale.h>
#include <unistd.h>

namespace portolan {

namespace {

/// Bytes of the printable character of more than one byte that `text` starts with; 0 if it starts otherwise.
size_t printableLength(std::string_view text)
{
    // The locale that lsof is run with; where it is missing, lsof too falls back to plain ASCII.
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t());
    if (!utf8)
        return 0;
    const locale_t previous = uselocale(utf8);
    wchar_t character = 0;
    std::mbstate_t state = {};
    const size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
    const bool isPrintable =
        length != size_t(-1) && length != size_t(-2) && length > 1 && std::iswprint(wint_t(character));
    uselocale(previous);
    return isPrintable ? length : 0;
}

void appendByte(std::string &out, unsigned char byte)
{
    constexpr std::string_view named = "\b\f\n\r\t\\";
    constexpr std::string_view letters = "bfnrt\\";
    if (const size_t at = named.find(char(byte)); at != std::string_view::npos) {
        out += '\\';
        out += letters[at];
    } else if (byte < 0x20) {
        out += '^';
        out += char(byte + 0x40);
    } else if (byte < 0x7f) {
        out += char(byte);
    } else {
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02x", byte);
        out += hex;
    }
}

std::string ipv4Name(std::span<const std::uint8_t> address)
{
    std::string name;
    for (const std::uint8_t byte : address)
        name += std::to_string(byte) + '.';
    name.pop_back();
    return name;
}

std::string ipv6Name(std::span<const std::uint8_t> address)
{
    char name[INET6_ADDRSTRLEN] = "";
    inet_ntop(AF_INET6, address.data(), name, sizeof name);
    return '[' + std::string(name) + ']';
}

/// Whether the runtime has renamed the process's main thread, which on Linux renames the process.
bool isThreadName(std::string_view command)
{
    return command == "MainThread" || command == "node-MainThread";
}

void nameAfterExecutable(SocketOwner &owner)
{
    char buffer[PATH_MAX];
    if (const auto link = ProcFs::readLink(buffer, ProcFs::Path(owner.pid, "exe").text()))
        owner.command = Lsof::executableName(*link);
}

/// Whether `pid` is there and has not ended.
bool isAlive(pid_t pid)
{
    KernelProcessTable table;
    const auto stat = table.stat(pid, table.runTime(pid));
    return stat && !stat->isZombie();
}

/// What is remembered from one listing to the next, for the whole process.
struct Memory
{
    std::mutex mutex;
    KernelProcessTable table;
    SocketOwners owners{table};
};

std::optional<std::vector<SocketOwner>> ownersOf(const std::vector<ListeningSocket> &sockets)
{
    static Memory memory;
    std::vector<ino_t> inodes;
    std::ranges::transform(sockets, std::back_inserter(inodes), &ListeningSocket::inode);
    const std::scoped_lock lock(memory.mutex);
    return memory.owners.find(inodes, SocketOwners::Clock::now());
}

} // namespace

std::string Lsof::escaped(std::string_view name)
{
    std::string out;
    while (!name.empty()) {
        const auto first = static_cast<unsigned char>(name.front());
        const size_t length = first < 0x80 ? 0 : printableLength(name);
        if (length > 0)
            out += name.substr(0, length);
        else
            appendByte(out, first);
        name.remove_prefix(std::max<size_t>(length, 1));
    }
    return out;
}

std::string Lsof::socketName(const ListeningSocket &socket)
{
    constexpr std::uint8_t mappedPrefix[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
    const bool isMapped =
        socket.isIpv6 && std::ranges::equal(std::span(socket.address).first(12), mappedPrefix);
    const bool isIpv4 = !socket.isIpv6 || isMapped;
    const auto address = std::span(socket.address).subspan(isMapped ? 12 : 0, isIpv4 ? 4 : 16);
    const bool isAny = std::ranges::all_of(address, [](std::uint8_t byte) { return byte == 0; });
    const std::string host = isAny ? "*" : isIpv4 ? ipv4Name(address) : ipv6Name(address);
    return host + ':' + std::to_string(socket.port);
}

std::string Lsof::listing(const std::vector<SocketOwner> &owners, const std::vector<ListeningSocket> &sockets)
{
    std::string text;
    for (const SocketOwner &owner : owners) {
        text += 'p' + std::to_string(owner.pid) + "\nc" + escaped(owner.command) + '\n';
        for (const SocketDescriptor &descriptor : owner.descriptors) {
            const auto socket =
                std::ranges::lower_bound(sockets, descriptor.inode, {}, &ListeningSocket::inode);
            text += "PTCP\nn" + socketName(*socket) + "\nTST=LISTEN\nTQR=" + std::to_string(socket->pending) +
                    "\nTQS=0\n";
        }
    }
    return text;
}

std::string_view Lsof::executableName(std::string_view link)
{
    constexpr std::string_view deleted = " (deleted)";
    if (link.ends_with(deleted))
        link.remove_suffix(deleted.size());
    return link.substr(link.rfind('/') + 1);
}

std::optional<std::string> Lsof::listeners()
{
    const auto sockets = ListeningSockets::read();
    auto owners = sockets ? ownersOf(*sockets) : std::nullopt;
    if (!owners)
        return std::nullopt;
    for (SocketOwner &owner : *owners) {
        if (isThreadName(owner.command))
            nameAfterExecutable(owner);
    }
    return listing(*owners, *sockets);
}

std::string Lsof::workingDirectory(pid_t pid)
{
    if (!ProcFs::isProcess(pid))
        return {};
    const ProcFs::Path path(pid, "cwd");
    const std::string head = 'p' + std::to_string(pid) + "\nn";
    char buffer[PATH_MAX];
    if (const auto link = ProcFs::readLink(buffer, path.text()))
        return head + escaped(*link) + '\n';
    const int error = errno;
    if (!isAlive(pid))
        return {};
    return head + path.text() + " (readlink: " + strerrordesc_np(error) + ")\n";
}

} // namespace portolan
