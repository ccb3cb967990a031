// SPDX-License-Identifier: MIT
// click_clock POINTER_X POINTER_Y X Y WIDTH HEIGHT: clicks, and prints how many milliseconds it takes until a
// new picture is shown in that rectangle of the screen. Fails after two seconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace portolan {

namespace {

using Clock = std::chrono::steady_clock;
using Pixels = std::vector<std::uint32_t>;

struct Freed
{
    void operator()(void *reply) const { std::free(reply); }
};

class Screen
{
public:
    Screen()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {}
    ~Screen() { xcb_disconnect(m_connection); }
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    void movePointer(std::int16_t x, std::int16_t y)
    {
        xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, false, XCB_CURRENT_TIME, m_root, x, y, 0);
        xcb_flush(m_connection);
    }

    void click()
    {
        for (const std::uint8_t event : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
            xcb_test_fake_input(m_connection, event, XCB_BUTTON_INDEX_1, XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_flush(m_connection);
    }

    Pixels read(const xcb_rectangle_t &area) const
    {
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, area.x, area.y,
                                          area.width, area.height, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, Freed> image(
            xcb_get_image_reply(m_connection, cookie, nullptr));
        if (!image)
            return {};
        const auto *data = reinterpret_cast<const std::uint32_t *>(xcb_get_image_data(image.get()));
        return {data, data + size_t(xcb_get_image_data_length(image.get())) / sizeof *data};
    }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

/// A window that was mapped but not painted has one colour, or the previous content.
bool isPicture(const Pixels &pixels, const Pixels &before)
{
    constexpr size_t shadesOfText = 16;
    return pixels != before && std::set<std::uint32_t>(pixels.begin(), pixels.end()).size() >= shadesOfText;
}

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    if (argc != 7)
        return 2;
    const auto number = [&](int i) { return std::int16_t(std::stoi(argv[i])); };
    const xcb_rectangle_t area{number(3), number(4), std::uint16_t(number(5)), std::uint16_t(number(6))};
    Screen screen;
    screen.movePointer(number(1), number(2));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const Pixels before = screen.read(area);
    const auto clicked = Clock::now();
    screen.click();
    while (!isPicture(screen.read(area), before)) {
        if (Clock::now() - clicked > std::chrono::seconds(2))
            return 1;
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    std::printf("%.1f\n", std::chrono::duration<double, std::milli>(Clock::now() - clicked).count());
}
