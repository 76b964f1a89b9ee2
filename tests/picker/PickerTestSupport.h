#pragma once
// A picker on fake desktop services, with the shared stores reset.
#include <gtest/gtest.h>

#include <memory>

#include "formats/ColorFormats.h"
#include "formats/SmartProfiles.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "picker/HotKeys.h"
#include "picker/Picker.h"
#include "picker/Sound.h"
#include "platform/testing/FakePickerDesktop.h"
#include "platform/testing/TestEnvironment.h"
#include "tests/support/LogCapture.h"

namespace kro::testing {

struct RecordingPickerDelegate final : PickerDelegate {
    void pickerDidPick(const ColorValue& color, PickerSource source) override { picks.push_back({color, source}); }
    void pickerDidSend(const ColorValue& color, PickerPlugin destination) override { sends.push_back({color, destination}); }
    void pickerDidPick(const std::vector<ColorValue>& colors) override { lists.push_back(colors); }
    void pickerDidPickContrast(const ColorValue& foreground, const ColorValue& background) override {
        pairs.push_back({foreground, background});
    }
    void pickerNeedsAccessibility() override { ++accessibilityPrompts; }
    std::vector<std::pair<ColorValue, ColorValue>> pairs;
    std::vector<std::pair<ColorValue, PickerSource>> picks;
    std::vector<std::pair<ColorValue, PickerPlugin>> sends;
    std::vector<std::vector<ColorValue>> lists;
    int accessibilityPrompts = 0;
};

// The 8-bit red, green and blue of a colour, as 0xRRGGBB.
inline uint32_t rgbOf(const ColorValue& color) {
    const auto byte = [](double value) { return static_cast<uint32_t>(std::lround(value * 255)); };
    return byte(color.red()) << 16 | byte(color.green()) << 8 | byte(color.blue());
}

// The fake desktop services a picker runs on.
struct PickerFakes {
    FakeScreenCapture screen;
    FakePointer pointer;
    FakeLoupeWindow window;
    FakeHotKeyCenter keys;
    FakePopUpMenu menu;
    FakeKeySimulator keySimulator;
    FakeSoundPlayer sound;
    FakeWorkspace workspace;
};

class PickerFixture : public ::testing::Test, protected PickerFakes {
protected:
    PickerFixture() {
        Preferences::resetSharedForTesting();
        User::resetShared();
        ColorFormats::resetShared();
        ColorFormats::shared().load();
        SmartProfiles::resetShared();
        HotKeys::resetSharedForTesting();
        HotKeys::shared().load();
        HotKeys::shared().setHotKeyCenter(&keys);
        Sound::setPlayer(&sound);
        picker = std::make_unique<Picker>(PickerServices{&window, &pointer, &screen, &workspace, &menu, &keySimulator});
        picker->pickerDelegate = &delegate;
    }
    ~PickerFixture() override {
        Sound::setPlayer(nullptr);
        HotKeys::resetSharedForTesting();
    }

    // Opens a session and runs it until the first frame is on show.
    void openAndReveal(PickerSource source = PickerSource::standard) {
        picker->open(source, 0.05);
        environment.queue.advance(Seconds(0.2));
    }
    void advance(double seconds) { environment.queue.advance(Seconds(seconds)); }
    void send(PointerEventType type, int flags = 0) {
        PointerEvent event;
        event.type = type;
        event.modifierFlags = flags;
        window.onEvent(event);
    }
    void click() {
        send(PointerEventType::leftMouseDown);
        send(PointerEventType::leftMouseUp);
    }
    // Puts the pointer on a point and lets the loupe sample there.
    void pointAt(double x, double y) {
        pointer.at = {x, y};
        send(PointerEventType::mouseMoved);
        picker->pickerImage.drawPass();
        advance(0.05);
    }

    TestEnvironment environment;
    RecordingPickerDelegate delegate;
    std::unique_ptr<Picker> picker;
};

}  // namespace kro::testing
