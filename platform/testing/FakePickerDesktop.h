#pragma once
// Fakes of the picker's desktop: a screen of known pixels, a pointer, the loupe window, global keys,
// menus, simulated keys, sounds and windows under the pointer.
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/HotKeyCenter.h"
#include "platform/KeySimulator.h"
#include "platform/LoupeWindow.h"
#include "platform/PointerControl.h"
#include "platform/PopUpMenu.h"
#include "platform/ScreenCapture.h"
#include "platform/Sound.h"
#include "platform/Workspace.h"

namespace kro::testing {

// Displays whose pixels come from a function of the global point.
struct FakeScreenCapture final : ScreenCapture {
    std::vector<ScreenInfo> displays{ScreenInfo{1, {0, 0, 1280, 800}, 1, nullptr}};
    std::function<uint32_t(int x, int y)> pixelAt = [](int x, int y) {
        return 0xFF000000u | (static_cast<uint32_t>(x & 0xFF) << 16) | (static_cast<uint32_t>(y & 0xFF) << 8);
    };
    std::string failWith;  // non-empty: every capture fails with it
    bool filterFails = false;
    int filtersMade = 0;
    int captures = 0;
    CaptureFilter lastFilter;

    std::vector<ScreenInfo> screens() const override { return displays; }
    std::optional<CaptureFilter> makeFilter(uint32_t displayID, uint64_t window, std::string&) override {
        if (filterFails) return std::nullopt;
        ++filtersMade;
        return CaptureFilter{displayID, window};
    }
    std::optional<Bitmap> captureImage(const CaptureFilter& filter, const ScreenRect& rect, int width, int height,
                                       std::string& error) override {
        ++captures;
        lastFilter = filter;
        if (!failWith.empty()) {
            error = failWith;
            return std::nullopt;
        }
        const ScreenInfo* screen = nullptr;
        for (const auto& display : displays) {
            if (display.displayID == filter.displayID) screen = &display;
        }
        Bitmap image{width, height, std::vector<uint32_t>(static_cast<size_t>(width) * height)};
        const double scale = width / rect.width;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                image.pixels[static_cast<size_t>(y) * width + x] =
                    pixelAt(static_cast<int>(screen->frame.x + rect.x + x / scale), static_cast<int>(screen->frame.y + rect.y + y / scale));
            }
        }
        return image;
    }
};

struct FakePointer final : PointerControl {
    ScreenPoint at{640, 400};
    int hidden = 0;  // hides stack up, as they do on the desktop
    std::vector<ScreenPoint> moves;
    ScreenPoint location() const override { return at; }
    void moveTo(ScreenPoint point) override {
        at = point;
        moves.push_back(point);
    }
    bool isCursorVisible() const override { return hidden == 0; }
    void hideCursor() override { ++hidden; }
    void unhideCursor() override {
        if (hidden > 0) --hidden;
    }
};

struct FakeLoupeWindow final : LoupeWindow {
    uint64_t windowID() const override { return 77; }
    void setFrame(const ScreenRect& value) override { frame = value; }
    void setAlpha(double value) override { alpha = value; }
    void orderFront() override { front = true; }
    void orderOut() override { front = false; }
    void setNeedsDisplay() override { ++displays; }
    ScreenRect frame;
    double alpha = 0;
    bool front = false;
    int displays = 0;
};

struct FakeHotKeyCenter final : HotKeyCenter {
    bool registerHotKey(int flags, int code, int identifier, const std::string& label) override {
        if (taken.count(identifier)) return false;
        registered[identifier] = {flags, code};
        labels.push_back(label);
        return true;
    }
    void unregisterAll() override { registered.clear(); }
    void press(int identifier) const {
        if (delegate) delegate(identifier);
    }
    std::map<int, std::pair<int, int>> registered;
    std::vector<std::string> labels;
    std::set<int> taken;  // held by another program
};

struct FakePopUpMenu final : PopUpMenu {
    void popUp(std::vector<PopUpMenuItem> newItems, ScreenPoint point, std::function<void()>) override {
        items = std::move(newItems);
        at = point;
        ++shown;
    }
    // Chooses the item of that title.
    void choose(const std::string& title) {
        for (const auto& item : items) {
            if (item.title == title && item.action) return item.action();
        }
    }
    std::vector<PopUpMenuItem> items;
    ScreenPoint at;
    int shown = 0;
};

struct FakeKeySimulator final : KeySimulator {
    bool available() const override { return granted; }
    bool postKey(int code, bool down, int flags) override {
        events.push_back({code, down, flags});
        return true;
    }
    struct Event {
        int code;
        bool down;
        int flags;
    };
    bool granted = true;
    std::vector<Event> events;
};

struct FakeSoundPlayer final : SoundPlayer {
    void play(const std::string& name) override { played.push_back(name); }
    std::vector<std::string> played;
};

struct FakeWorkspace final : Workspace {
    void refresh() override { ++refreshes; }
    const std::vector<WorkspaceWindow>& items() const override { return windows; }
    std::optional<std::string> frontmostBundle() const override { return std::nullopt; }
    std::vector<WorkspaceWindow> windows;
    int refreshes = 0;
};

}  // namespace kro::testing
