#include "DisplayServer.h"

#include "FileDescriptor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>

#include <algorithm>

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

// WAYLAND_DISPLAY holds an absolute path or the name of a socket in XDG_RUNTIME_DIR.
bool canConnectToWayland()
{
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QDir runtimeFolder(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    const QByteArray path = QFile::encodeName(runtimeFolder.filePath(name));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || path.size() >= qsizetype(sizeof address.sun_path))
        return false;
    std::ranges::copy(path, address.sun_path);
    const FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return ::connect(connection.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

bool hasPlugin(const QString &platform)
{
    return std::ranges::any_of(QCoreApplication::libraryPaths(), [&](const QString &folder) {
        const QDir plugins(folder + "/platforms"_L1);
        return !plugins.entryList({"libq"_L1 + platform + "*.so"_L1}, QDir::Files).isEmpty();
    });
}

} // namespace

std::optional<QByteArray> DisplayServer::platformPlugin()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return QByteArray();
    if (canConnectToX11())
        return QByteArray("xcb");
    if (hasPlugin(u"wayland"_s) && canConnectToWayland())
        return QByteArray("wayland");
    return std::nullopt;
}

} // namespace portolan
