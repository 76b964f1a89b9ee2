#include "PickerTestSupport.h"

using namespace kro;
using namespace kro::testing;

namespace {

using PickerSessionTest = PickerFixture;

}  // namespace

TEST_F(PickerSessionTest, OpeningSwapsTheKeysHidesTheCursorAndRevealsOnTheFirstFrame) {
    const auto registered = [&](HotKeyIdentifier id) { return keys.registered.count(static_cast<int>(id)) == 1; };
    HotKeys::shared().registerGlobalKeys();
    ASSERT_TRUE(registered(HotKeyIdentifier::openPicker));

    picker->open(PickerSource::standard, 0.05);
    EXPECT_FALSE(pointer.isCursorVisible());
    EXPECT_FALSE(registered(HotKeyIdentifier::openPicker));
    EXPECT_TRUE(registered(HotKeyIdentifier::pickColorEnter));
    EXPECT_FALSE(window.front) << "the window waits for the delay";

    advance(0.06);
    EXPECT_TRUE(window.front);
    EXPECT_EQ(window.alpha, 1) << "the first frame reveals the window";
    // The show nudges the cursor one point down, and the window is centred on it.
    EXPECT_EQ(pointer.at.y, 401);
    EXPECT_EQ(window.frame, (ScreenRect{240, 1, 800, 800}));
    ASSERT_TRUE(picker->color);
    EXPECT_EQ(rgbOf(*picker->color), 0x809100u);

    picker->close(true);
    EXPECT_FALSE(window.front);
    EXPECT_TRUE(registered(HotKeyIdentifier::openPicker));
    EXPECT_FALSE(registered(HotKeyIdentifier::pickColorEnter));
}

TEST_F(PickerSessionTest, AFailedFirstCaptureRevealsAnEmptyLensAndNoCaptureWaitsTwoSeconds) {
    screen.failWith = "no pixels";
    picker->open(PickerSource::standard, 0.05);
    advance(0.1);
    EXPECT_EQ(window.alpha, 1) << "the first capture ended, with or without an image";
    EXPECT_FALSE(picker->pickerImage.pickerImage);
    EXPECT_TRUE(picker->isOpen) << "failures never end the session";
    picker->close(true);

    pointer.at = {-100, -100};  // on no screen: no capture starts
    picker->open(PickerSource::standard, 0.05);
    advance(1.9);
    EXPECT_EQ(window.alpha, 0);
    advance(0.2);
    EXPECT_EQ(window.alpha, 1);
}

TEST_F(PickerSessionTest, ClosingDuringTheDelayKeepsTheWindowHiddenAndTheCursorComesBack) {
    pointer.hidden = 1;  // hidden once already by someone else
    picker->open(PickerSource::standard, 0.05);
    picker->update();
    picker->close(true);
    EXPECT_TRUE(pointer.isCursorVisible());
    advance(3);
    EXPECT_FALSE(window.front);
    EXPECT_FALSE(picker->canShowOptions) << "the one-second step of the old session is void";
}

TEST_F(PickerSessionTest, StandardClickDeliversACopyOfTheColourAndClosesOnlyWithAColour) {
    picker->open(PickerSource::standard, 5);  // no frame yet
    click();
    EXPECT_FALSE(picker->isOpen);
    EXPECT_TRUE(delegate.picks.empty());

    openAndReveal(PickerSource::inspector);
    pointAt(300, 20);
    click();
    ASSERT_EQ(delegate.picks.size(), 1u);
    EXPECT_EQ(rgbOf(delegate.picks[0].first), 0x2C1400u);
    EXPECT_EQ(delegate.picks[0].second, PickerSource::inspector);
    EXPECT_FALSE(picker->isOpen);
    EXPECT_FALSE(picker->color) << "the color does not outlive the session";
}

TEST_F(PickerSessionTest, MultipleModeKeepsTwentyColoursAndReturnNeedsOne) {
    picker->mode = PickerMode::multiple;
    openAndReveal();
    picker->confirm(PickerConfirmTrigger::enter);
    EXPECT_TRUE(picker->isOpen) << "Return with no colors leaves the session open";

    for (int i = 0; i < 21; ++i) {
        pointAt(i, 50);
        picker->confirm(PickerConfirmTrigger::space);
    }
    ASSERT_EQ(picker->colors.size(), 20u);
    EXPECT_EQ(rgbOf(picker->colors.front()), 0x013200u) << "the first color was dropped";
    EXPECT_EQ(std::count(sound.played.begin(), sound.played.end(), "color"), 21);

    picker->confirm(PickerConfirmTrigger::enter);
    EXPECT_FALSE(picker->isOpen);
    ASSERT_EQ(delegate.lists.size(), 1u);
    EXPECT_EQ(delegate.lists[0].size(), 20u);
    EXPECT_EQ(picker->mode, PickerMode::standard);
}

TEST_F(PickerSessionTest, ContrastModeStartsOverOnTheThirdClickAndHandsItsPairToTheChecker) {
    picker->mode = PickerMode::contrast;
    openAndReveal();
    pointAt(10, 10);
    click();
    pointAt(20, 20);
    click();
    EXPECT_EQ(picker->colors.size(), 2u);
    EXPECT_TRUE(picker->borderResetMode) << "the centre shows the reset mark";

    click();
    EXPECT_TRUE(picker->colors.empty()) << "the third click clears and adds nothing";
    EXPECT_FALSE(picker->borderResetMode);

    click();
    pointAt(30, 30);
    click();
    const auto held = picker->colors;
    picker->confirm(PickerConfirmTrigger::enter);
    EXPECT_FALSE(picker->isOpen);
    EXPECT_TRUE(delegate.lists.empty()) << "the palette menu is not offered";
    ASSERT_EQ(delegate.pairs.size(), 1u);
    EXPECT_EQ(rgbOf(delegate.pairs[0].first), rgbOf(held[0]));
    EXPECT_EQ(rgbOf(delegate.pairs[0].second), rgbOf(held[1]));
}

TEST_F(PickerSessionTest, PluginModeSendsAndStaysOpenOrClosesWithoutThePermission) {
    picker->mode = PickerMode::plugin;
    openAndReveal();
    send(PointerEventType::flagsChanged, 0x80000);
    EXPECT_EQ(picker->destination, PickerPlugin::secondary);
    click();
    ASSERT_EQ(delegate.sends.size(), 1u);
    EXPECT_EQ(delegate.sends[0].second, PickerPlugin::secondary);
    EXPECT_TRUE(picker->isOpen);
    send(PointerEventType::flagsChanged, 0);
    EXPECT_EQ(picker->destination, PickerPlugin::primary);

    keySimulator.granted = false;
    click();
    EXPECT_FALSE(picker->isOpen);
    EXPECT_EQ(delegate.accessibilityPrompts, 1);
}

TEST_F(PickerSessionTest, AHeldButtonEntersPrecisionModeAndTheCursorGoesATenthOfTheWay) {
    openAndReveal();
    pointAt(500, 300);
    send(PointerEventType::leftMouseDown);
    advance(0.2);
    EXPECT_FALSE(picker->precisionMode);
    send(PointerEventType::leftMouseUp);
    EXPECT_EQ(delegate.picks.size(), 1u) << "a short press picks at once";

    openAndReveal();
    pointAt(500, 300);
    send(PointerEventType::leftMouseDown);
    advance(0.3);
    EXPECT_TRUE(picker->precisionMode);
    EXPECT_EQ(picker->pickerTutorial.hint, PickerHint::precision);
    PointerEvent motion;
    motion.type = PointerEventType::mouseMoved;
    motion.deltaX = 30;
    motion.deltaY = -20;
    pointer.at = {530, 280};  // where the mouse would have taken it
    window.onEvent(motion);
    EXPECT_DOUBLE_EQ(pointer.at.x, 503);
    EXPECT_DOUBLE_EQ(pointer.at.y, 298);
    send(PointerEventType::leftMouseUp);
    EXPECT_FALSE(picker->precisionMode);
    EXPECT_EQ(delegate.picks.size(), 2u);

    openAndReveal();
    send(PointerEventType::leftMouseDragged);
    EXPECT_TRUE(picker->precisionMode) << "a drag enters precision mode at once";
    picker->close(true);
    EXPECT_FALSE(picker->precisionMode);
}

TEST_F(PickerSessionTest, SizeAndZoomStayInTheirBoundsFromEveryInput) {
    openAndReveal();
    PointerEvent wheel;
    wheel.type = PointerEventType::scrollWheel;
    wheel.deltaY = -1;  // one notch: size grows by 20, shown in steps of 30
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerSize, 180);
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerSize, 210);
    EXPECT_EQ(picker->pickerTutorial.hint, PickerHint::size);
    wheel.deltaY = -100;
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerSize, 360);
    EXPECT_EQ(Preferences::shared().pickerSize(), 360);

    wheel.modifierFlags = 0x80000;  // Alt: zoom
    wheel.deltaY = 3;
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerZoom, 4);
    wheel.deltaY = -6;
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerZoom, 10) << "zoom moves in steps of 2 during a gesture";
    wheel.phase = GesturePhase::ended;
    window.onEvent(wheel);
    EXPECT_EQ(picker->pickerZoom, 8) << "and settles on a multiple of 4";

    PointerEvent pinch;
    pinch.type = PointerEventType::magnify;
    pinch.phase = GesturePhase::began;
    window.onEvent(pinch);
    pinch.phase = GesturePhase::changed;
    pinch.magnification = -5;
    window.onEvent(pinch);
    EXPECT_EQ(picker->pickerSize, 120);

    PointerEvent tap;
    tap.type = PointerEventType::smartMagnify;
    window.onEvent(tap);
    EXPECT_EQ(picker->pickerSize, 360);
    window.onEvent(tap);
    EXPECT_EQ(picker->pickerSize, 120);
    tap.modifierFlags = 0x80000;
    window.onEvent(tap);
    EXPECT_EQ(picker->pickerZoom, 20);
    window.onEvent(tap);
    EXPECT_EQ(picker->pickerZoom, 4);
}

TEST_F(PickerSessionTest, CtrlOpensTheModeMenuOnlyAfterTheFirstSecond) {
    openAndReveal();
    send(PointerEventType::flagsChanged, 0x100000);
    EXPECT_TRUE(picker->isOpen);
    EXPECT_EQ(menu.shown, 0);

    advance(1);
    send(PointerEventType::flagsChanged, 0x100000 | 0x20000);
    EXPECT_EQ(menu.shown, 0) << "only Ctrl alone opens the menu";
    send(PointerEventType::flagsChanged, 0x100000);
    EXPECT_FALSE(picker->isOpen);
    ASSERT_EQ(menu.shown, 1);
    std::vector<std::string> titles;
    for (const auto& item : menu.items) titles.push_back(item.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Pick Color", "Multiple Colors", "Check Contrast"}));
    EXPECT_TRUE(menu.items[0].checked);

    menu.choose("Multiple Colors");
    EXPECT_TRUE(picker->isOpen);
    EXPECT_EQ(picker->mode, PickerMode::multiple);
}

TEST_F(PickerSessionTest, TheScreenPositionIndexNamesTheNearSides) {
    openAndReveal();
    // Row by three plus column; the middle when no screen is under the pointer.
    for (auto [x, y, index] : {std::tuple{0, 0, 0}, {1279, 0, 2}, {0, 799, 6}, {1279, 799, 8}, {640, 400, 4}, {640, 100, 1}, {-50, 400, 4}}) {
        pointer.at = {double(x), double(y)};
        EXPECT_EQ(picker->screenPosition(), index) << x << "," << y;
    }
    // At a corner the window hangs off the screen.
    pointer.at = {0, 0};
    picker->update();
    EXPECT_EQ(window.frame, (ScreenRect{-400, -400, 800, 800}));
}

TEST_F(PickerSessionTest, AtAHiDPIScaleTheWindowGrowsAroundThePointersDevicePixelAndThePickStaysExact) {
    // A second screen drawn at twice the scale, to the right of the first.
    screen.displays.push_back(ScreenInfo{2, {1280, 0, 2560, 1600}, 1, nullptr, 2});
    openAndReveal();
    pointAt(1500, 300);
    EXPECT_EQ(window.frame, (ScreenRect{700, -500, 1600, 1600}));
    EXPECT_EQ(rgbOf(*picker->color), ((1500u & 0xFFu) << 16) | ((300u & 0xFFu) << 8)) << "one cell, one device pixel";
    EXPECT_EQ(picker->screenPosition(), 0) << "near an edge means 200 interface pixels, 400 device pixels here";

    pointAt(500, 300);
    EXPECT_EQ(window.frame, (ScreenRect{100, -100, 800, 800}));
    EXPECT_EQ(picker->screenPosition(), 4);
}

TEST(LoupeLayout, TheTextBoxStaysOnTheScreenAtEveryEdgeAndScale) {
    const auto box = [&](double x, double y, int size = 180, const ScreenInfo& on = ScreenInfo{1, {0, 0, 1280, 800}, 1, nullptr}) {
        return loupeOverlayBox(size, screenInLoupeView(on, {x, y}));
    };
    // In the open: centred below the lens.
    EXPECT_EQ(box(640, 300), (ViewBox{280, 496, 240, 64}));
    // At the top-right corner, where the tray sits, it moves left to stay whole.
    EXPECT_EQ(box(1279, 5).x + 240, 400 + (1280 - 1279) - 4);
    // At the left edge it moves right, and at the bottom it goes above the lens.
    EXPECT_EQ(box(0, 400).x, 400 + 4);
    EXPECT_EQ(box(640, 790, 360), (ViewBox{280, 220 - 6 - 64, 240, 64}));
    EXPECT_EQ(box(640, 500, 360).y, 220 + 360 + 6) << "below while it fits";
    // At twice the scale the screen spans half as many interface pixels from the pointer.
    const ScreenInfo twice{2, {1280, 0, 2560, 1600}, 1, nullptr, 2};
    EXPECT_EQ(box(3838, 800, 180, twice).x + 240, 400 + 1 - 4);
    EXPECT_EQ(box(1500, 1590, 180, twice).y, 310 - 6 - 64);
}

TEST_F(PickerSessionTest, TheProfileBadgeFollowsTheSmartProfileUnderThePointer) {
    Preferences::shared().setSmartProfiles(true);
    auto item = std::make_shared<SmartProfileItem>();
    item->name = "Inkscape";
    item->profile = ColorSpaceProfile::displayP3;
    SmartProfiles::shared().add("org.inkscape.Inkscape", item);
    workspace.windows = {{1, 0, "Inkscape", "org.inkscape.Inkscape", ScreenRect{0, 0, 600, 600}}};

    openAndReveal();
    pointAt(100, 100);
    EXPECT_EQ(picker->profileBadge, "Inkscape · Display P3");
    pointAt(900, 100);
    EXPECT_EQ(picker->profileBadge, "");
}
