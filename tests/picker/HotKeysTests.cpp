#include <gtest/gtest.h>

#include <set>

#include "PickerTestSupport.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "picker/HotKeyLabel.h"

using namespace kro;
using namespace kro::testing;

namespace {

constexpr int kCtrl = HotKeyFlags::command, kAlt = HotKeyFlags::option, kShift = HotKeyFlags::shift,
              kSuper = HotKeyFlags::control;

class HotKeysTest : public ::testing::Test {
protected:
    HotKeysTest() {
        HotKeys::resetSharedForTesting();
        hotKeys().setHotKeyCenter(&center);
    }
    ~HotKeysTest() override { HotKeys::resetSharedForTesting(); }
    static HotKeys& hotKeys() { return HotKeys::shared(); }
    std::string path() const { return environment.paths.dataHome + "/kroapp.Kro/v5/hotkeys.json"; }
    HotKey& key(HotKeyIdentifier id) {
        for (auto& key : hotKeys().hotKeys) {
            if (key.id == id) return key;
        }
        throw std::runtime_error("no such key");
    }

    TestEnvironment environment;
    FakeHotKeyCenter center;
};

}  // namespace

TEST_F(HotKeysTest, TheShippedTableHasOneRecordPerActionAndNoDefaultClashes) {
    const auto shipped = HotKeys::shippedHotKeys();
    std::set<HotKeyIdentifier> ids;
    for (const auto& key : shipped) ids.insert(key.id);
    EXPECT_EQ(ids.size(), static_cast<size_t>(kHotKeyIdentifierCount));
    EXPECT_EQ(shipped.size(), ids.size());

    hotKeys().hotKeys = shipped;
    for (const auto& key : shipped) {
        if (!key.enabled()) continue;
        const auto used = hotKeys().usedHotKey(key.flags, key.code, key.id);
        EXPECT_FALSE(used) << text(key.id) << " clashes: " << used->reason;
    }
}

TEST_F(HotKeysTest, AMissingOrDamagedFileGivesTheShippedTableAndADamagedOneIsKept) {
    hotKeys().load();
    EXPECT_EQ(hotKeys().hotKeys, HotKeys::shippedHotKeys());
    const auto& posted = environment.notifications.postedNames();
    ASSERT_GE(posted.size(), 2u);
    EXPECT_EQ(posted[posted.size() - 2], Notifications::shortcutsLoaded);
    EXPECT_EQ(posted.back(), Notifications::shortcutsUpdated);

    environment.files.createDirectories(parentPath(path()));
    environment.files.writeAtomically(path(), "[{\"id\": 3}]");
    hotKeys().load();
    EXPECT_EQ(hotKeys().hotKeys, HotKeys::shippedHotKeys());
    EXPECT_EQ(environment.files.read(path()), "[{\"id\": 3}]");
    ASSERT_TRUE(hotKeys().save());
    EXPECT_EQ(environment.files.read(path() + ".damaged-20260101T000000Z"), "[{\"id\": 3}]") << "put aside, not lost";
}

TEST_F(HotKeysTest, ASavedTableComesBackAndAnOlderOneGainsTheNewActions) {
    hotKeys().load();
    key(HotKeyIdentifier::openPicker).code = 8;
    auto older = hotKeys().hotKeys;
    older.erase(std::remove_if(older.begin(), older.end(), [](const HotKey& k) { return k.id == HotKeyIdentifier::toggleColorDock; }),
                older.end());
    environment.files.createDirectories(parentPath(path()));
    environment.files.writeAtomically(path(), encodeHotKeys(older));
    HotKeys::resetSharedForTesting();
    hotKeys().load();
    EXPECT_EQ(hotKeys().hotKeys.size(), static_cast<size_t>(kHotKeyIdentifierCount));
    EXPECT_EQ(key(HotKeyIdentifier::openPicker).code, 8);
}

TEST_F(HotKeysTest, TheGlobalAndPickerSetsFollowTheirOwnRules) {
    hotKeys().load();
    auto& picker = key(HotKeyIdentifier::openPicker);
    auto& enter = key(HotKeyIdentifier::pickColorEnter);
    auto& zoom = key(HotKeyIdentifier::increasePickerZoom);
    auto& size = key(HotKeyIdentifier::increasePickerSize);

    picker.deleted = true;
    hotKeys().registerGlobalKeys();
    EXPECT_FALSE(center.registered.count(static_cast<int>(HotKeyIdentifier::openPicker))) << "deleted keys are not global";
    EXPECT_FALSE(center.registered.count(static_cast<int>(HotKeyIdentifier::pickColorEnter)));

    enter.deleted = true;                 // not looked at in the picker set
    zoom.state = HotKeyState::disabled;   // disabled and visible: left out
    size.state = HotKeyState::disabled;
    size.visible = false;                 // disabled but hidden: kept
    hotKeys().registerPickerKeys();
    EXPECT_TRUE(center.registered.count(static_cast<int>(HotKeyIdentifier::pickColorEnter)));
    EXPECT_FALSE(center.registered.count(static_cast<int>(HotKeyIdentifier::increasePickerZoom)));
    EXPECT_TRUE(center.registered.count(static_cast<int>(HotKeyIdentifier::increasePickerSize)));
    EXPECT_FALSE(center.registered.count(static_cast<int>(HotKeyIdentifier::quitApp)));

    std::vector<HotKeyIdentifier> pressed;
    hotKeys().setDelegate([&](HotKeyIdentifier id) { pressed.push_back(id); });
    center.press(static_cast<int>(HotKeyIdentifier::closePicker));
    center.press(99);
    EXPECT_EQ(pressed, (std::vector<HotKeyIdentifier>{HotKeyIdentifier::closePicker, HotKeyIdentifier::unknown}));
}

TEST_F(HotKeysTest, ACombinationHeldByAnotherProgramIsReportedAndSkipped) {
    hotKeys().load();
    center.taken.insert(static_cast<int>(HotKeyIdentifier::openPicker));
    LogCapture capture;
    hotKeys().registerGlobalKeys();
    const auto log = capture.text();
    EXPECT_NE(log.find("The shortcut Ctrl+Alt+P for openPicker cannot be had"), std::string::npos) << log;
    EXPECT_FALSE(center.registered.count(static_cast<int>(HotKeyIdentifier::openPicker)));
    EXPECT_TRUE(center.registered.count(static_cast<int>(HotKeyIdentifier::openColorPanel))) << "the others still work";
}

TEST_F(HotKeysTest, UsedHotKeyChecksTheReservedRowsFirstThenTheOtherActions) {
    hotKeys().load();
    auto used = hotKeys().usedHotKey(kCtrl, 8, HotKeyIdentifier::openPicker);
    ASSERT_TRUE(used);
    EXPECT_EQ(used->state, HotKeyUsedState::system);
    EXPECT_EQ(used->reason, "Copy the selected data to the Clipboard");
    EXPECT_EQ(used->shortcut, "⌘ C");

    // ⌘ P stands twice; the first row answers.
    EXPECT_EQ(hotKeys().usedHotKey(kCtrl, 35, HotKeyIdentifier::openPicker)->reason,
              "Display a window for specifying document parameters (Page Setup)");

    const auto& picker = key(HotKeyIdentifier::openPicker);
    used = hotKeys().usedHotKey(picker.flags, picker.code, HotKeyIdentifier::openColorPanel);
    ASSERT_TRUE(used);
    EXPECT_EQ(used->state, HotKeyUsedState::app);
    EXPECT_EQ(used->reason, "This shortcut combination is already used in app (Pick Color)");
    EXPECT_FALSE(hotKeys().usedHotKey(picker.flags, picker.code, HotKeyIdentifier::openPicker)) << "its own combination stays allowed";

    // The irregular reserved rows never match: ⌘Q is only refused as the quit action's own key.
    used = hotKeys().usedHotKey(kCtrl, 12, HotKeyIdentifier::openPicker);
    ASSERT_TRUE(used);
    EXPECT_EQ(used->state, HotKeyUsedState::app);
    EXPECT_FALSE(hotKeys().usedHotKey(kCtrl, 12, HotKeyIdentifier::quitApp));
    EXPECT_FALSE(hotKeys().usedHotKey(kCtrl | kAlt, 5, HotKeyIdentifier::openPicker)) << "⌥⌘ G is free";
}

TEST(HotKeyLabels, GlyphsComeInTheirFixedOrderAndWordsReadForPeople) {
    EXPECT_EQ(shortcutLabel(kCtrl | kAlt | kSuper | kShift, 35), "⇧⌃⌥⌘ P");
    EXPECT_EQ(shortcutLabel(kCtrl, 51), "⌘ ⌫");
    EXPECT_EQ(shortcutLabel(0, 49), " ⎵");
    EXPECT_EQ(readableShortcutLabel(kShift | kCtrl, 123), "Ctrl+Shift+Left");
    EXPECT_EQ(readableShortcutLabel(kSuper | kAlt, 36), "Super+Alt+Return");

    EXPECT_EQ(shortcutLabel(kCtrl, 41), "⌘ ") << "a key outside the table has no fixed label";
    setKeyboardLayoutLabel([](int code) -> std::optional<std::string> {
        if (code == 41) return "Ö";
        return std::nullopt;
    });
    EXPECT_EQ(shortcutLabel(kCtrl, 41), "⌘ Ö");
    EXPECT_EQ(shortcutLabel(kCtrl, 0), "⌘ A") << "the fixed table comes first";
    setKeyboardLayoutLabel({});
}

TEST(HotKeyRecords, DecodingIsStrictAboutEveryField) {
    const HotKey key{HotKeyIdentifier::closePicker, "Close", 2, kShift, 53, true, false, true, HotKeyState::disabled,
                     false, HotKeyGroupIdentifier::picker};
    EXPECT_EQ(decodeHotKeys(encodeHotKeys({key})), std::vector<HotKey>{key});

    auto json = key.toJson();
    for (const char* field : {"id", "flags", "state", "group"}) {
        auto broken = json;
        broken.erase(field);
        EXPECT_THROW(HotKey::fromJson(broken), JsonDecodeError) << field;
    }
    auto wrong = json;
    wrong["group"] = "toolbar";
    EXPECT_THROW(HotKey::fromJson(wrong), JsonDecodeError);
    wrong = json;
    wrong["code"] = 1e12;
    EXPECT_THROW(HotKey::fromJson(wrong), JsonDecodeError);
    EXPECT_THROW(decodeHotKeys("{}"), JsonDecodeError);
}

TEST_F(HotKeysTest, RecordingRefusesReservedUsedAndReadOnlyCombinationsAndKeepsTheRest) {
    hotKeys().load();
    const auto before = key(HotKeyIdentifier::openColorPanel);

    auto refused = hotKeys().record(HotKeyIdentifier::openColorPanel, kCtrl, 8);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->reason, "Copy the selected data to the Clipboard");
    const auto& picker = key(HotKeyIdentifier::openPicker);
    refused = hotKeys().record(HotKeyIdentifier::openColorPanel, picker.flags, picker.code);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->state, HotKeyUsedState::app);
    EXPECT_EQ(key(HotKeyIdentifier::openColorPanel).code, before.code) << "a refusal changes nothing";

    for (const auto& each : hotKeys().hotKeys) {
        if (!each.readonly) continue;
        EXPECT_TRUE(hotKeys().record(each.id, kCtrl | kAlt, 5)) << "read-only actions keep their keys";
        break;
    }

    environment.notifications.clearPostedNames();
    EXPECT_FALSE(hotKeys().record(HotKeyIdentifier::openColorPanel, kCtrl | kAlt, 5));
    EXPECT_EQ(environment.notifications.postedNames(),
              (std::vector<std::string>{Notifications::shortcutsSaved, Notifications::shortcutsUpdated}));
    EXPECT_TRUE(center.registered.count(static_cast<int>(HotKeyIdentifier::openColorPanel)));
    HotKeys::resetSharedForTesting();
    hotKeys().setHotKeyCenter(&center);
    hotKeys().load();
    EXPECT_EQ(key(HotKeyIdentifier::openColorPanel).code, 5) << "the new combination was saved";

    // Held by another program: registered again, and marked unavailable.
    center.taken.insert(static_cast<int>(HotKeyIdentifier::openColorPanel));
    hotKeys().setEnabled(HotKeyIdentifier::openColorPanel, true);
    EXPECT_TRUE(hotKeys().isUnavailable(HotKeyIdentifier::openColorPanel));

    hotKeys().resetToShipped();
    EXPECT_EQ(key(HotKeyIdentifier::openColorPanel).code, before.code);
}
