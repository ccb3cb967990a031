// SPDX-License-Identifier: MIT
#include "PointerPresses.h"

#include "XcbDisplay.h"

#include <QGuiApplication>

#include <xcb/xinput.h>

namespace portolan {

namespace {
// The wheel's directions are buttons to X11.
constexpr std::uint32_t firstWheelButton = 4;
constexpr std::uint32_t lastWheelButton = 7;
} // namespace

void PointerPresses::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    const XcbDisplay display;
    if (!display)
        return;
    m_enabled = enabled;
    m_extension = display.selectRawPresses(enabled);
    if (enabled)
        qGuiApp->installNativeEventFilter(this);
    else
        qGuiApp->removeNativeEventFilter(this);
}

bool PointerPresses::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    // The filter is installed only on X11, where every message is an XCB event.
    const auto *event = static_cast<const xcb_ge_generic_event_t *>(message);
    if ((event->response_type & ~0x80) != XCB_GE_GENERIC || event->extension != m_extension ||
        event->event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return false;
    const auto button = static_cast<const xcb_input_raw_button_press_event_t *>(message)->detail;
    if (button < firstWheelButton || button > lastWheelButton)
        Q_EMIT pressed();
    return false;
}

} // namespace portolan
