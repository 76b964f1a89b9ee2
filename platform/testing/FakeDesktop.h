#pragma once
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
