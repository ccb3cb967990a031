// SPDX-License-Identifier: MIT
// lsof's field output of listening sockets.
#include "LsofOutput.h"
#include "Require.h"

#include <QByteArrayView>

namespace portolan {

using PortScanner::parseListeners;

static QString printed(const QList<RawListener> &listeners)
{
    QString text;
    for (const RawListener &listener : listeners) {
        text += QStringLiteral("p%1\nc").arg(listener.pid) + listener.command;
        text += QStringLiteral("\nn*:%1\n").arg(listener.port);
    }
    return text;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    const QList<RawListener> listeners = parseListeners(text);
    require(listeners.size() <= text.count(u'n'));
    require(parseListeners(text + u'\n') == listeners);
    require(parseListeners(printed(listeners)) == listeners);
    for (const RawListener &listener : listeners)
        require(text.contains(listener.command));
    return 0;
}

} // namespace portolan
