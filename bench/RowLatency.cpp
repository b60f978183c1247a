// SPDX-License-Identifier: MIT
// Measures the time from a finished screenshot to its row on the screen, as a separate client of
// the X server sees it.
//
// usage: row_latency FOLDER PICTURE COUNT
//
// Copies PICTURE into FOLDER, which a running Velmora watches with the tray at the bottom right,
// and prints two figures in milliseconds per run, counted from the return of close(): until
// anything changes where the tray appears, and until its row is visible. Once the file has its
// name, closes the row with a click, and continues when the tray is gone.

#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <poll.h>
#include <string>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Pixels = std::vector<uint8_t>;

constexpr int trayWidth = 620;
constexpr int trayHeight = 88;
constexpr int margin = 44;
constexpr int inset = 8;
constexpr int closeButtonFromRight = 32;
constexpr int bytesPerPixel = 4;
constexpr auto patience = std::chrono::seconds(30);

/// A row counts as visible when this many of its pixels differ this clearly from the tray's fill.
constexpr int seenPixels = 200;
constexpr int seenDifference = 16;

[[noreturn]] void fail(const std::string &why)
{
    std::fprintf(stderr, "row_latency: %s\n", why.c_str());
    std::exit(1);
}

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply *reply)
{
    return {reply, &std::free};
}

/// The part of the screen where the tray with one row appears.
class TrayArea
{
public:
    TrayArea()
    {
        m_connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(m_connection) != 0)
            fail("no display");
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_x = static_cast<int16_t>(m_screen->width_in_pixels - trayWidth - margin);
        m_y = static_cast<int16_t>(m_screen->height_in_pixels - trayHeight - margin);
        const auto version = owned(xcb_damage_query_version_reply(
            m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
        if (!version)
            fail("the server does not tell of damage");
        m_damage = xcb_generate_id(m_connection);
        xcb_damage_create(m_connection, m_damage, m_screen->root,
                          XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        m_background = pixels();
    }
    TrayArea(const TrayArea &) = delete;
    TrayArea &operator=(const TrayArea &) = delete;
    ~TrayArea() { xcb_disconnect(m_connection); }

    Pixels pixels() const
    {
        const auto image = owned(
            xcb_get_image_reply(m_connection,
                                xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                              m_screen->root, m_x, m_y, trayWidth, trayHeight, ~0U),
                                nullptr));
        if (!image)
            fail("no picture of the screen");
        const uint8_t *data = xcb_get_image_data(image.get());
        return Pixels(data, data + xcb_get_image_data_length(image.get()));
    }

    bool isEmpty(const Pixels &pixels) const { return pixels == m_background; }

    /// Whether something in the row's place differs from the tray's fill beside it.
    static bool showsRow(const Pixels &pixels)
    {
        const size_t fill = pixelIndex(inset / 2, trayHeight / 2);
        int different = 0;
        for (int y = inset; y < trayHeight - inset; ++y) {
            for (int x = inset; x < trayWidth - inset; ++x)
                different += differs(pixels, pixelIndex(x, y), fill) ? 1 : 0;
        }
        return different >= seenPixels;
    }

    /// Waits until something on the screen changes, for a limited time.
    void waitForChange()
    {
        constexpr int milliseconds = 5;
        xcb_flush(m_connection);
        pollfd descriptor = {xcb_get_file_descriptor(m_connection), POLLIN, 0};
        bool changed = drainEvents();
        if (!changed && ::poll(&descriptor, 1, milliseconds) > 0)
            changed = drainEvents();
        if (changed)
            xcb_damage_subtract(m_connection, m_damage, XCB_NONE, XCB_NONE);
    }

    void clickCloseButton()
    {
        movePointer(m_x + trayWidth - closeButtonFromRight, m_y + trayHeight / 2);
        xcb_test_fake_input(m_connection, XCB_BUTTON_PRESS, 1, 0, m_screen->root, 0, 0, 0);
        xcb_test_fake_input(m_connection, XCB_BUTTON_RELEASE, 1, 0, m_screen->root, 0, 0, 0);
        xcb_flush(m_connection);
    }

    void movePointerAway() { movePointer(1, 1); }

private:
    static size_t pixelIndex(int x, int y)
    {
        return (static_cast<size_t>(y) * trayWidth + static_cast<size_t>(x)) * bytesPerPixel;
    }

    static bool differs(const Pixels &pixels, size_t first, size_t second)
    {
        for (size_t channel = 0; channel < 3; ++channel) {
            if (std::abs(pixels[first + channel] - pixels[second + channel]) >= seenDifference)
                return true;
        }
        return false;
    }

    bool drainEvents()
    {
        bool any = false;
        while (owned(xcb_poll_for_event(m_connection)))
            any = true;
        return any;
    }

    void movePointer(int x, int y)
    {
        xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, 0, m_screen->root,
                            static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
        xcb_flush(m_connection);
    }

    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    xcb_damage_damage_t m_damage = 0;
    int16_t m_x = 0;
    int16_t m_y = 0;
    Pixels m_background;
};

/// Waits for the condition, checked at every change of the screen.
template <typename Condition>
void waitFor(TrayArea &area, const char *what, Condition condition)
{
    const auto end = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > end)
            fail(std::string("waited too long: ") + what);
        area.waitForChange();
    }
}

std::string readFile(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The folder's only file, once it no longer has its first name.
std::string namedFile(const std::filesystem::path &folder)
{
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.front() != '.' && name.rfind("Screenshot ", 0) != 0 &&
            name.find("-screen-") == std::string::npos)
            return entry.path().string();
    }
    return {};
}

void measureOnce(TrayArea &area, const std::filesystem::path &folder, const std::string &picture,
                 int number)
{
    const auto path = folder / ("Screenshot " + std::to_string(number) + ".png");
    {
        std::ofstream file(path, std::ios::binary);
        file.write(picture.data(), static_cast<std::streamsize>(picture.size()));
    }
    const auto complete = Clock::now();
    Milliseconds change{};
    Milliseconds seen{};
    waitFor(area, "the row", [&] {
        const Pixels pixels = area.pixels();
        const Milliseconds passed = Clock::now() - complete;
        if (change == Milliseconds() && !area.isEmpty(pixels))
            change = passed;
        if (area.isEmpty(pixels) || !TrayArea::showsRow(pixels))
            return false;
        seen = passed;
        return true;
    });
    std::printf("%.2f %.2f\n", change.count(), seen.count());
    std::string named;
    waitFor(area, "the name", [&] { return !(named = namedFile(folder)).empty(); });
    area.clickCloseButton();
    waitFor(area, "the closed row", [&] { return area.isEmpty(area.pixels()); });
    area.movePointerAway();
    std::filesystem::remove(named);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4)
        fail("usage: row_latency FOLDER PICTURE COUNT");
    const std::string picture = readFile(argv[2]);
    const int count = std::atoi(argv[3]);
    TrayArea area;
    area.movePointerAway();
    for (int number = 1; number <= count; ++number)
        measureOnce(area, argv[1], picture, number);
    return 0;
}
