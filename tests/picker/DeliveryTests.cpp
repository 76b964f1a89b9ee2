#include "PickerTestSupport.h"
#include "app/AppDelegate.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "picker/CMD.h"
#include "platform/testing/FakeDesktop.h"

using namespace kro;
using namespace kro::testing;

namespace {

class DeliveryTest : public ::testing::Test, protected PickerFakes {
protected:
    void SetUp() override {
        Preferences::resetSharedForTesting();
        Settings::resetSharedForTesting();
        User::resetShared();
        ColorFormats::resetShared();
        HotKeys::resetSharedForTesting();
        auto desktop = fake.desktop();
        desktop.hotKeyCenter = &keys;
        desktop.pointer = &pointer;
        desktop.screenCapture = &screen;
        desktop.loupeWindow = &window;
        desktop.popUpMenu = &menu;
        desktop.keySimulator = &keySimulator;
        desktop.sound = &sound;
        desktop.workspace = &workspace;
        delegate = std::make_unique<AppDelegate>(desktop);
        delegate->applicationDidFinishLaunching();
        environment.queue.runDue();
        environment.notifications.clearPostedNames();
    }
    void TearDown() override {
        delegate.reset();
        HotKeys::resetSharedForTesting();
    }

    std::vector<std::string> historyHex() const {
        std::vector<std::string> hex;
        for (const auto& color : User::shared()->history->colors) hex.push_back(color->hex);
        return hex;
    }

    TestEnvironment environment;
    FakeDesktop fake;
    std::unique_ptr<AppDelegate> delegate;
};

const ColorValue kOrange = ColorValue::rgb(1, 0.5, 0);

}  // namespace

TEST_F(DeliveryTest, AStandardPickReachesTheClipboardTheHistoryTheIconAndTheTooltip) {
    const auto expected = ColorFormats::shared().clipboardString(kOrange);
    ASSERT_EQ(expected, "#FF8000") << "the shipped catalogue's selected format";

    delegate->pickerDidPick(kOrange, PickerSource::standard);
    environment.queue.runDue();
    EXPECT_EQ(fake.clipboard.contents, expected);
    EXPECT_EQ(delegate->clipboards, std::set<std::string>{expected});
    EXPECT_EQ(historyHex(), std::vector<std::string>{"FF7F00"}) << "the record's hex truncates";
    EXPECT_EQ(sound.played, std::vector<std::string>{"color"});
    ASSERT_TRUE(fake.statusItem.lastColor);
    EXPECT_EQ(fake.tooltip.messages.back(), ColorFormats::shared().pickerString(kOrange));
    const auto& posted = environment.notifications.postedNames();
    EXPECT_EQ(std::count(posted.begin(), posted.end(), Notifications::userUpdated), 1);

    // The same colour again: one entry where it was, the clipboard written again, the sound again.
    delegate->pickerDidPick(ColorValue::rgb(0, 0, 1), PickerSource::standard);
    fake.clipboard.contents.reset();
    delegate->pickerDidPick(kOrange, PickerSource::standard);
    EXPECT_EQ(historyHex(), (std::vector<std::string>{"0000FF", "FF7F00"}));
    EXPECT_EQ(fake.clipboard.contents, expected);
    EXPECT_EQ(sound.played.size(), 3u);
}

TEST_F(DeliveryTest, ALockedHistoryStillLetsTheSelectedPaletteTakeTheColour) {
    auto user = User::shared();
    auto palette = user->palettes.front();
    user->paletteUUID = palette->uuid;
    user->history->lock = true;
    const auto before = palette->colors.size();

    delegate->pickerDidPick(kOrange, PickerSource::standard);
    EXPECT_TRUE(user->history->colors.empty());
    ASSERT_EQ(palette->colors.size(), before + 1);
    EXPECT_EQ(palette->colors.front()->hex, "FF7F00");
    EXPECT_EQ(fake.clipboard.contents, "#FF8000") << "the text still reaches the clipboard";

    palette->lock = true;
    delegate->pickerDidPick(ColorValue::rgb(0, 1, 0), PickerSource::standard);
    EXPECT_EQ(palette->colors.size(), before + 1);
}

TEST_F(DeliveryTest, OtherSourcesNeitherTouchTheClipboardNorTheLibrary) {
    for (auto source : {PickerSource::colorpanel, PickerSource::inspector, PickerSource::contrastForeground}) {
        delegate->pickerDidPick(kOrange, source);
    }
    EXPECT_FALSE(fake.clipboard.contents);
    EXPECT_TRUE(User::shared()->history->colors.empty());
    EXPECT_EQ(sound.played.size(), 3u);
    Preferences::shared().setPlaySounds(false);
    delegate->pickerDidPick(kOrange, PickerSource::inspector);
    EXPECT_EQ(sound.played.size(), 3u);
}

TEST_F(DeliveryTest, AFormatChangeRewritesTheClipboardOnlyWhenAColourWasDelivered) {
    environment.notifications.post(Notifications::colorFormatUpdated);
    EXPECT_FALSE(fake.clipboard.contents);

    auto color = Color::make(kOrange);
    delegate->copyColor(color, false, ColorDeliveryTarget::clipboard);
    EXPECT_FALSE(fake.clipboard.contents) << "auto-import leaves the clipboard alone";
    EXPECT_TRUE(delegate->clipboards.empty());
    ASSERT_TRUE(delegate->clipboardColor);
    environment.queue.runDue();
    EXPECT_FALSE(fake.tooltip.messages.empty());

    auto& formats = ColorFormats::shared();
    for (const auto& format : formats.formats) {
        if (format->name != formats.selectedFormatName) {
            formats.select(*format);
            break;
        }
    }
    EXPECT_EQ(fake.clipboard.contents, formats.clipboardString(*delegate->clipboardColor));
}

TEST_F(DeliveryTest, TheColoursOfASessionGoToANewOrAChosenPalette) {
    const std::vector<ColorValue> colors{ColorValue::rgb(1, 0, 0), ColorValue::rgb(0, 1, 0)};
    delegate->pickerDidPick(colors);
    ASSERT_GE(menu.items.size(), 3u);
    EXPECT_EQ(menu.items[0].title, "Create Palette");
    EXPECT_EQ(menu.items[1].title, "");
    EXPECT_EQ(menu.items[2].title, "Your First Palette!");

    const auto count = User::shared()->palettes.size();
    menu.choose("Create Palette");
    ASSERT_EQ(User::shared()->palettes.size(), count + 1);
    EXPECT_EQ(User::shared()->palettes.back()->colors.size(), 2u);
    EXPECT_EQ(historyHex(), (std::vector<std::string>{"00FF00", "FF0000"}));
    EXPECT_EQ(sound.played.back(), "palette");

    delegate->pickerDidPick(colors);
    menu.choose("Your First Palette!");
    const auto& first = User::shared()->palettes.front()->colors;
    EXPECT_EQ(first[0]->hex, "00FF00");
    EXPECT_EQ(first[1]->hex, "FF0000");
    EXPECT_EQ(historyHex().size(), 2u) << "colors already in the history stay as they are";
}

// The whole pick by keyboard (open, arrow moves, Return) runs on a real display in the end-to-end test.
TEST_F(DeliveryTest, ShortcutsStepSizeAndZoomWithinBounds) {
    const auto press = [&](HotKeyIdentifier id) { keys.press(static_cast<int>(id)); };
    press(HotKeyIdentifier::openPicker);
    auto& picker = delegate->picker();
    ASSERT_TRUE(picker.isOpen);

    picker.setPickerSize(360);
    press(HotKeyIdentifier::increasePickerSize);
    EXPECT_EQ(picker.pickerSize, 360);
    press(HotKeyIdentifier::decreasePickerSize);
    EXPECT_EQ(picker.pickerSize, 300);
    picker.setPickerZoom(4);
    press(HotKeyIdentifier::decreasePickerZoom);
    EXPECT_EQ(picker.pickerZoom, 4);
    press(HotKeyIdentifier::increasePickerZoom);
    EXPECT_EQ(picker.pickerZoom, 8);
    press(HotKeyIdentifier::moveRight10px);
    EXPECT_DOUBLE_EQ(pointer.at.x, 650);
}

TEST_F(DeliveryTest, ThePickerCommandAndTheTrayOpenThePickerAndTheTrayListsTheHistory) {
    delegate->handleURL("kro://picker");
    EXPECT_TRUE(delegate->picker().isOpen);
    delegate->picker().close(true);

    delegate->pickerDidPick(kOrange, PickerSource::standard);
    const auto& items = fake.statusItem.menu;
    ASSERT_GE(items.size(), 4u);
    EXPECT_EQ(items.front().title, "Pick Color");
    EXPECT_EQ(items.back().title, "Quit Kro");
    EXPECT_TRUE(items[2].swatch);
    fake.clipboard.contents.reset();
    items[2].action();
    EXPECT_EQ(fake.clipboard.contents, "#FF8000");

    fake.statusItem.onActivated();
    EXPECT_TRUE(delegate->picker().isOpen);
}

TEST_F(DeliveryTest, ACommandLinePickAnswersOnceItsColoursArePickedAndAnEmptySessionEndsIt) {
    std::vector<std::string> replies;
    const auto ask = [&](const std::string& request) {
        delegate->handleAgentRequest(request, [&replies](const std::string& reply) { replies.push_back(reply); });
    };
    auto& picker = delegate->picker();
    const auto pickAt = [&](double x, double y) {
        pointer.at = {x, y};
        environment.queue.advance(Seconds(0.3));
        picker.pickerImage.drawPass();
        environment.queue.advance(Seconds(0.1));
        picker.confirm(PickerConfirmTrigger::mouse);
        environment.queue.advance(Seconds(0.1));
    };
    // Two colours in a template: each session picks one and the next opens by itself, in the standard mode
    // whatever the last session left; each colour is also delivered as usual.
    picker.mode = PickerMode::multiple;
    ask(R"({"pick": {"count": 2, "template": "hex[red]hex[green]hex[blue]"}})");
    EXPECT_TRUE(picker.isOpen);
    EXPECT_EQ(picker.mode, PickerMode::standard);
    ask(R"({"pick": {}})");
    EXPECT_EQ(replies, std::vector<std::string>{R"({"ok":false,"error":"the loupe is already open"})"});
    replies.clear();
    pickAt(10, 20);
    EXPECT_TRUE(replies.empty());
    EXPECT_TRUE(picker.isOpen) << "the second session";
    pickAt(30, 40);
    ASSERT_EQ(replies.size(), 1u);
    EXPECT_EQ(replies[0], R"({"ok":true,"lines":["0a1500","1e2800"]})") << "the first show nudged the pointer one down";
    EXPECT_EQ(historyHex(), (std::vector<std::string>{"1E2800", "0A1500"}));

    // A named format; Escape (a close without a pick) ends the request with nothing picked.
    replies.clear();
    ask(R"({"pick": {"format": "No Such Format"}})");
    EXPECT_EQ(replies, std::vector<std::string>{R"({"ok":false,"error":"no format named \"No Such Format\""})"});
    EXPECT_FALSE(picker.isOpen);
    replies.clear();
    ask(R"({"pick": {"count": 3}})");
    pickAt(50, 60);
    environment.queue.advance(Seconds(0.3));
    picker.close(true);
    EXPECT_EQ(replies, std::vector<std::string>{R"({"ok":false,"error":"no color was picked"})"});
    EXPECT_EQ(fake.clipboard.contents, "#323D00") << "the color picked before still reached the clipboard";
}

TEST(CMDKeys, CopyAndPasteTypeCtrlAndTheKeyWithAPauseBeforeEachEvent) {
    TestEnvironment environment;
    FakeKeySimulator keys;
    std::vector<int> pauses;
    CMD::setKeySimulator(&keys);
    CMD::setSleep([&](int microseconds) { pauses.push_back(microseconds); });
    CMD::performCopy(nullptr);
    bool checked = false;
    CMD::performPaste([&] { checked = true; });
    ASSERT_EQ(keys.events.size(), 4u);
    EXPECT_EQ(keys.events[0].code, 8);
    EXPECT_TRUE(keys.events[0].down);
    EXPECT_EQ(keys.events[0].flags, HotKeyFlags::command);
    EXPECT_FALSE(keys.events[1].down);
    EXPECT_EQ(keys.events[1].flags, 0);
    EXPECT_EQ(keys.events[2].code, 9);
    EXPECT_EQ(pauses, std::vector<int>(4, 100000));
    EXPECT_FALSE(checked);
    environment.queue.advance(Seconds(0.1));
    EXPECT_TRUE(checked);

    keys.granted = false;
    CMD::performCopy(nullptr);
    EXPECT_EQ(keys.events.size(), 4u);
    CMD::setKeySimulator(nullptr);
}
