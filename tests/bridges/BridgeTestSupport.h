#pragma once
// The registry on fake channels, with the shipped entries loaded and the application in front followed.
#include <gtest/gtest.h>

#include "bridges/Plugin.h"
#include "picker/CMD.h"
#include "platform/testing/FakeBridgeChannels.h"
#include "platform/testing/FakeDesktop.h"
#include "platform/testing/FakePickerDesktop.h"
#include "platform/testing/TestEnvironment.h"
#include "tests/support/LogCapture.h"

namespace kro::testing {

// The 8-bit red, green and blue of a colour, as "RRGGBB".
inline std::string hexOf(const ColorValue& color) {
    const auto bytes = rgb8(color);
    char text[7];
    std::snprintf(text, sizeof text, "%02X%02X%02X", bytes.red, bytes.green, bytes.blue);
    return text;
}

inline std::vector<std::string> hexOf(const std::vector<ColorValue>& colors) {
    std::vector<std::string> texts;
    for (const auto& color : colors) texts.push_back(hexOf(color));
    return texts;
}

struct BridgeFakes {
    FakeSessionBus bus;
    FakeDropFolder drop;
    FakeLocalSocketClient sockets;
    FakeActiveApplicationMonitor applications;
    FakeClipboard clipboard;
    FakeKeySimulator keys;
};

// The picker's fakes that the agent needs besides the bridges' own.
struct PickerFakesForBridges {
    FakeScreenCapture screen;
    FakePointer pointer;
    FakeLoupeWindow window;
    FakeHotKeyCenter hotKeys;
    FakePopUpMenu menu;
    FakeSoundPlayer sound;
};

class RegistryFixture : public ::testing::Test, protected BridgeFakes {
protected:
    RegistryFixture() {
        Plugin::resetSharedForTesting();
        CMD::setKeySimulator(&keys);
        CMD::setSleep([](int) {});
        plugin().setServices({&applications, &bus, &drop, &sockets, &clipboard});
        plugin().load();
        plugin().startTracking();
    }
    ~RegistryFixture() override {
        CMD::setKeySimulator(nullptr);
        Plugin::resetSharedForTesting();
    }
    static Plugin& plugin() { return Plugin::shared(); }
    void advance(double seconds) { environment.queue.advance(Seconds(seconds)); }

    // The result of a get, once it has answered.
    struct GetResult {
        bool answered = false;
        std::optional<PluginItemResult> result;
    };
    std::shared_ptr<GetResult> get(PickerPlugin slot, const std::optional<std::string>& application = std::nullopt) {
        auto outcome = std::make_shared<GetResult>();
        plugin().getColor(plugin().target(application), slot, [outcome](const std::optional<PluginItemResult>& result) {
            outcome->answered = true;
            outcome->result = result;
        });
        return outcome;
    }
    std::shared_ptr<std::optional<bool>> set(PickerPlugin slot, const ColorValue& color,
                                             const std::optional<std::string>& application = std::nullopt) {
        auto outcome = std::make_shared<std::optional<bool>>();
        plugin().setColor(plugin().target(application), slot, color, [outcome](bool taken) { *outcome = taken; });
        return outcome;
    }

    TestEnvironment environment;
};

}  // namespace kro::testing
