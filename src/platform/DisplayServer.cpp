#include "DisplayServer.h"

#include <QtGlobal>

#include <xcb/xcb.h>

namespace {

bool answersX11()
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

} // namespace

std::optional<QByteArray> DisplayServer::platformPlugin()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return QByteArray();
    if (answersX11())
        return QByteArray("xcb");
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return QByteArray("wayland");
    return std::nullopt;
}
