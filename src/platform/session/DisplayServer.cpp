// SPDX-License-Identifier: MIT
#include "DisplayServer.h"

#include "FileDescriptor.h"
#include "XcbDisplay.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScreen>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

bool canConnectToX11()
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    const bool isConnected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isConnected;
}

// A connection to the socket at `path`, with time-outs of one second; invalid if it fails.
FileDescriptor connectionTo(const QByteArray &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= qsizetype(sizeof address.sun_path))
        return FileDescriptor();
    std::ranges::copy(path, address.sun_path);
    FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval second{1, 0};
    ::setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &second, sizeof second);
    ::setsockopt(connection.get(), SOL_SOCKET, SO_SNDTIMEO, &second, sizeof second);
    const bool isConnected =
        ::connect(connection.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    return isConnected ? std::move(connection) : FileDescriptor();
}

// WAYLAND_DISPLAY holds an absolute path or the name of a socket in XDG_RUNTIME_DIR.
bool canConnectToWayland()
{
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QDir runtimeFolder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    return !name.isEmpty() && connectionTo(QFile::encodeName(runtimeFolder.filePath(name))).isOpen();
}

// Whether this is a session of sway in which an output is scaled. Asked over sway's own socket, since X11
// does not tell.
bool isScaledSway()
{
    const FileDescriptor sway = connectionTo(qgetenv("SWAYSOCK"));
    if (!sway.isOpen())
        return false;
    struct
    {
        std::array<char, 6> magic{'i', '3', '-', 'i', 'p', 'c'};
        std::array<char, 8> sizeAndType{};
    } head;
    constexpr char getOutputs = 3;
    head.sizeAndType[4] = getOutputs;
    if (::send(sway.get(), &head, sizeof head, MSG_NOSIGNAL) != sizeof head ||
        ::recv(sway.get(), &head, sizeof head, MSG_WAITALL) != sizeof head)
        return false;
    constexpr quint32 largest = 1 << 20;
    QByteArray outputs(std::min(qFromUnaligned<quint32>(head.sizeAndType.data()), largest), 0);
    ::recv(sway.get(), outputs.data(), size_t(outputs.size()), MSG_WAITALL);
    const QJsonArray list = QJsonDocument::fromJson(outputs).array();
    return std::any_of(list.begin(), list.end(),
                       [](const QJsonValue &output) { return output["scale"_L1].toDouble() > 1; });
}

bool hasPlugin(const QString &platform)
{
    return std::ranges::any_of(QCoreApplication::libraryPaths(), [&](const QString &folder) {
        // Not with QDir's name filters: the regular expressions behind them take half a megabyte.
        const QStringList plugins = QDir(folder + "/platforms"_L1).entryList(QDir::Files);
        return std::ranges::any_of(plugins, [&](const QString &plugin) {
            return plugin.startsWith("libq"_L1 + platform) && plugin.endsWith(".so"_L1);
        });
    });
}

} // namespace

std::optional<QByteArray> DisplayServer::platformPlugin()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return QByteArray();
    const bool hasWayland = hasPlugin(u"wayland"_s) && canConnectToWayland();
    if (hasWayland && isScaledSway())
        return QByteArray("wayland");
    if (canConnectToX11())
        return QByteArray("xcb");
    if (hasWayland)
        return QByteArray("wayland");
    return std::nullopt;
}

bool DisplayServer::canPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith("wayland"_L1);
}

std::optional<QPoint> DisplayServer::pointer()
{
    // Under Xwayland the names of outputs begin with XWAYLAND, or WAYLAND_DISPLAY is set.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const bool isXwayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                            (screen && screen->name().startsWith("XWAYLAND"_L1));
    return canPlaceWindows() && !isXwayland ? std::optional(QCursor::pos()) : std::nullopt;
}

bool DisplayServer::isPointerOnDesktop()
{
    const XcbDisplay display;
    return !display || display.isPointerOnDesktop();
}

} // namespace portolan
