#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/Desktop.h"

namespace kro::testing {

struct FakeStatusItem final : StatusItem {
    void redraw(const std::optional<ColorValue>& color) override {
        ++redrawCount;
        lastColor = color;
    }
    void setMenu(std::vector<StatusMenuItem> items) override { menu = std::move(items); }
    bool isInTray() const override { return inTray; }
    void notify(const std::string& title, const std::string& body) override { notifications.push_back(title + "\n" + body); }
    bool inTray = true;
    std::vector<std::string> notifications;
    int redrawCount = 0;
    std::optional<ColorValue> lastColor;
    std::vector<StatusMenuItem> menu;
};

struct FakeTooltipWindow final : TooltipWindow {
    void show(const std::string& message, double) override { messages.push_back(message); }
    std::vector<std::string> messages;
};

struct FakeClipboard final : Clipboard {
    std::optional<std::string> text() const override { return contents; }
    void setText(const std::string& value) override { contents = value; }
    std::optional<std::string> contents;
};

struct FakeNetworkMonitor final : NetworkMonitor {
    void start(std::function<void(NetworkStatus)> h) override { handler = std::move(h); }
    void cancel() override { cancelled = true; }
    std::function<void(NetworkStatus)> handler;
    bool cancelled = false;
};

struct FakeAppearance final : Appearance {
    void apply(std::optional<bool> dark) override { applied.push_back(dark); }
    std::vector<std::optional<bool>> applied;
};

// A window that records what it was asked to do.
struct FakeWindow final : WindowController {
    void show() override { visible = true; ++shown; }
    void hide() override { visible = false; }
    void close() override { visible = false; }
    bool isVisible() const override { return visible; }
    void inspect(const ColorValue& color) override { inspected.push_back(color); }
    void showNotice(const std::string& text) override { notices.push_back(text); }
    void showColors(const ColorValue& foreground, const ColorValue& background) override {
        pairs.push_back({foreground, background});
    }
    void showPane(int number) override { panes.push_back(number); }
    bool visible = false;
    int shown = 0;
    std::vector<ColorValue> inspected;
    std::vector<std::string> notices;
    std::vector<std::pair<ColorValue, ColorValue>> pairs;
    std::vector<int> panes;
};

// Makes fake windows of the given kinds and keeps a pointer to each for the test to read.
struct FakeWindowFactory final : WindowFactory {
    std::unique_ptr<WindowController> makeWindow(WindowKind kind) override {
        order.push_back(kind);
        FakeWindow** kept = kind == WindowKind::menu          ? &menu
                            : kind == WindowKind::main        ? &main
                            : kind == WindowKind::contrast    ? &contrast
                            : kind == WindowKind::preferences ? &preferences
                                                              : nullptr;
        if (!kept) return nullptr;
        auto window = std::make_unique<FakeWindow>();
        *kept = window.get();
        return window;
    }
    std::vector<WindowKind> order;
    FakeWindow* menu = nullptr;
    FakeWindow* main = nullptr;
    FakeWindow* contrast = nullptr;
    FakeWindow* preferences = nullptr;
};

// Every desktop service as a fake, and the Desktop that points at them.
struct FakeDesktop {
    FakeStatusItem statusItem;
    FakeTooltipWindow tooltip;
    FakeClipboard clipboard;
    FakeNetworkMonitor network;
    FakeAppearance appearance;
    Desktop desktop() { return {&statusItem, &tooltip, &clipboard, &network, &appearance, nullptr}; }
};

}  // namespace kro::testing
