// SPDX-License-Identifier: MIT
// The kernel's tables: the answer on the netlink socket, /proc/net/tcp and tcp6, /proc/PID/stat and statm.
#include "ListeningSockets_p.h"
#include "PrintedName.h"
#include "ProcessStat.h"
#include "Require.h"

#include <QString>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const std::span bytes(reinterpret_cast<const char *>(data), size);
    const std::string_view text(bytes.data(), bytes.size());
    std::vector<ListeningSocket> sockets;
    (void)ListeningSockets::readMessages(bytes, sockets);
    require(sockets.size() <= size / 72); // a header and an inet_diag_msg each

    for (const bool isIpv6 : {false, true}) {
        for (const ListeningSocket &socket : ListeningSockets::parseTable(text, isIpv6))
            require(isIpv6 || (socket.address[10] == 0xff && socket.address[11] == 0xff));
    }

    if (const auto stat = parseProcessStat(text)) {
        require(text.find(stat->command) != text.npos);
        const QString printed =
            PrintedName::of(QByteArrayView(stat->command.data(), qsizetype(stat->command.size())));
        require(!printed.contains(u'\n') && !printed.contains(u'\x1b'));
    }
    (void)parseResidentPages(text);
    return 0;
}

} // namespace portolan
