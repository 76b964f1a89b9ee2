// The lens road timed on a real X server, from outside the agent, as a person meets it: the picker's hot
// key typed through XTest until the lens's first frame is on the screen, and a one-pixel pointer move
// until the lens shows the moved picture. Run by bench/lens-timing, which starts Xvfb and the agent.
//
// The probe puts two blocks of colour side by side, green and blue, and the pointer three pixels left of
// where they meet. It watches one screen pixel 16 pixels right of the pointer: bare, that pixel is blue;
// in the lens at the usual zoom of 8 it shows the pixel 2 to the right of the pointer, green. A move of
// one pixel to the right puts blue there too, and one back brings green again.
//   lens_probe [OPENINGS] [MOVES]
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kEdgeX = 500, kTop = 200, kBlockWidth = 200, kBlockHeight = 400;
constexpr uint32_t kGreen = 0x20C040, kBlue = 0x2040C0;
constexpr int kPointerY = 400;
constexpr int kProbeOffset = 16;  // two cells of 8 lens pixels to the right of the pointer's cell

xcb_connection_t* connection;
xcb_screen_t* screen;
xcb_key_symbols_t* symbols;

void makeBlock(int x, uint32_t color) {
    const xcb_window_t window = xcb_generate_id(connection);
    const uint32_t values[] = {color, 1};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, static_cast<int16_t>(x), kTop, kBlockWidth,
                      kBlockHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(connection, window);
}

uint32_t pixelAt(int x, int y) {
    auto* reply = xcb_get_image_reply(connection, xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root,
                                                                static_cast<int16_t>(x), static_cast<int16_t>(y), 1, 1, ~0u),
                                      nullptr);
    if (!reply) return 0;
    uint32_t pixel = 0;
    if (xcb_get_image_data_length(reply) >= 4) pixel = *reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply)) & 0xFFFFFF;
    free(reply);
    return pixel;
}

// Nearer green than blue: the lens's grid lines and the cell borders tint what they cross.
bool looksGreen(uint32_t pixel) { return ((pixel >> 8) & 0xFF) > (pixel & 0xFF); }

void fakeKey(xcb_keysym_t symbol, bool press) {
    xcb_keycode_t* codes = xcb_key_symbols_get_keycode(symbols, symbol);
    if (!codes) return;
    xcb_test_fake_input(connection, press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, codes[0], XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    free(codes);
}

void typeKeys(std::initializer_list<xcb_keysym_t> keys) {
    for (auto key : keys) fakeKey(key, true);
    for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) fakeKey(*key, false);
    xcb_flush(connection);
}

void movePointerTo(int x, int y) {
    xcb_test_fake_input(connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, screen->root, static_cast<int16_t>(x),
                        static_cast<int16_t>(y), 0);
    xcb_flush(connection);
}

// Milliseconds until the probe pixel looks green (or not), or a negative number after five seconds.
double waitForProbe(int pointerX, bool green, Clock::time_point start) {
    while (Clock::now() - start < std::chrono::seconds(5)) {
        if (looksGreen(pixelAt(pointerX + kProbeOffset, kPointerY)) == green)
            return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return -1;
}

void report(const char* what, std::vector<double> milliseconds) {
    if (milliseconds.empty()) return;
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("%s: median %.2f ms, fastest %.2f ms, slowest %.2f ms (%zu runs)\n", what,
                milliseconds[milliseconds.size() / 2], milliseconds.front(), milliseconds.back(), milliseconds.size());
}

}  // namespace

int main(int argc, char** argv) {
    const int openings = argc > 1 ? std::atoi(argv[1]) : 20;
    const int moves = argc > 2 ? std::atoi(argv[2]) : 100;
    connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "lens_probe: no X display\n");
        return 2;
    }
    screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    symbols = xcb_key_symbols_alloc(connection);
    makeBlock(kEdgeX - kBlockWidth, kGreen);
    makeBlock(kEdgeX, kBlue);
    xcb_flush(connection);
    const int pointerX = kEdgeX - 3;
    movePointerTo(pointerX, kPointerY);
    if (waitForProbe(pointerX, false, Clock::now()) < 0) {
        std::fprintf(stderr, "lens_probe: the colour blocks did not appear\n");
        return 1;
    }

    std::vector<double> firstFrames;
    for (int i = 0; i < openings; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        const auto start = Clock::now();
        typeKeys({XK_Control_L, XK_Alt_L, XK_p});
        const double shown = waitForProbe(pointerX, true, start);
        if (shown < 0) {
            std::fprintf(stderr, "lens_probe: no lens after the hot key\n");
            return 1;
        }
        firstFrames.push_back(shown);
        typeKeys({XK_Escape});
        if (waitForProbe(pointerX, false, Clock::now()) < 0) {
            std::fprintf(stderr, "lens_probe: the lens did not close\n");
            return 1;
        }
    }
    report("hot key to first lens frame", firstFrames);

    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    typeKeys({XK_Control_L, XK_Alt_L, XK_p});
    if (waitForProbe(pointerX, true, Clock::now()) < 0) return 1;
    std::vector<double> frames;
    for (int i = 0; i < moves; ++i) {
        // Moved, the pointer sits two pixels from the edge and the probe shows blue; back, green again.
        const bool movedRight = i % 2 == 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const auto start = Clock::now();
        movePointerTo(movedRight ? pointerX + 1 : pointerX, kPointerY);
        const double shown = waitForProbe(movedRight ? pointerX + 1 : pointerX, !movedRight, start);
        if (shown < 0) {
            std::fprintf(stderr, "lens_probe: the lens did not follow the pointer\n");
            return 1;
        }
        frames.push_back(shown);
    }
    typeKeys({XK_Escape});
    report("pointer move to lens frame", frames);
    xcb_key_symbols_free(symbols);
    xcb_disconnect(connection);
    return 0;
}
