#include <gtest/gtest.h>

#include <algorithm>

#include "app/AppDelegate.h"
#include "formats/color/ColorConversions.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "platform/Json.h"
#include "platform/testing/FakeDesktop.h"
#include "platform/testing/TestEnvironment.h"
#include "tests/support/LogCapture.h"

using namespace kro;
using namespace kro::testing;

namespace {

class AppDelegateTest : public ::testing::Test {
protected:
    void SetUp() override {
        Preferences::resetSharedForTesting();
        User::resetShared();
        UserUndo::shared().reset();
        delegate = std::make_unique<AppDelegate>(fake.desktop());
        delegate->applicationDidFinishLaunching();
        environment.queue.runDue();
    }
    void TearDown() override { delegate.reset(); }

    TestEnvironment environment;
    FakeDesktop fake;
    std::unique_ptr<AppDelegate> delegate;
};

}  // namespace

// The colour and palette commands, their saving and their tooltips run through the real agent in the
// end-to-end test; here, what it does not reach.
TEST_F(AppDelegateTest, UnnamedPalettesTakeTheNextFreeName) {
    delegate->handleURL("kro://palette/rgba/255-0-0-1,0-0-255-0.5/_");
    delegate->handleURL("kro://palette/hex/00FF00/_");
    const auto& palettes = User::shared()->palettes;
    ASSERT_EQ(palettes.size(), 3u);
    EXPECT_EQ(palettes[1]->name, "Palette");
    EXPECT_EQ(palettes[2]->name, "Palette (1)");
    EXPECT_EQ(fake.tooltip.messages.back(), "Palette Created");
}

TEST_F(AppDelegateTest, MalformedCommandsDoNothingSayNothingAndLogOneLineEach) {
    environment.notifications.clearPostedNames();
    const auto before = fake.tooltip.messages.size();
    const std::vector<std::string> urls = {"kro://color/hex/FF0080", "kro://color/hex/FF0080/a/b", "kro://unknown/x/y/z",
                                           "kro://color/rgba/1-2-x-1/Bad", "kro://palette/rgba/1-2-3-1,1-2/P", "kro://",
                                           "kro://color/hex/FF0080/Raw Space", "kro://contrast/rgba/1-2-3-1,x/",
                                           "kro://contrast/hex/FF0000", "kro://settings/colors",
                                           "kro://color/hex/FF0080/%00"};
    LogCapture log;
    for (const auto& url : urls) delegate->handleURL(url);
    const auto lines = log.text();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), static_cast<long>(urls.size())) << lines;
    EXPECT_NE(lines.find("URL command ignored, unknown command: kro://unknown/x/y/z\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("URL command ignored, a color does not read: kro://palette/rgba/1-2-3-1,1-2/P\n"),
              std::string::npos) << lines;
    EXPECT_TRUE(User::shared()->history->colors.empty());
    EXPECT_EQ(User::shared()->palettes.size(), 1u);
    EXPECT_EQ(fake.tooltip.messages.size(), before);
    EXPECT_TRUE(environment.notifications.postedNames().empty());
}

TEST_F(AppDelegateTest, AfterARestartTheTrayIconShowsTheNewestColourOfTheHistory) {
    EXPECT_FALSE(fake.statusItem.lastColor) << "an empty history leaves the plain icon";
    delegate->handleURL("kro://color/hex/FF0080/Hot%20Pink");
    delegate->handleURL("kro://color/hex/00A0FF/Sky");

    delegate.reset();
    User::resetShared();
    FakeDesktop restarted;
    delegate = std::make_unique<AppDelegate>(restarted.desktop());
    delegate->applicationDidFinishLaunching();
    environment.queue.runDue();
    ASSERT_TRUE(restarted.statusItem.lastColor);
    EXPECT_EQ(hexText(*restarted.statusItem.lastColor), "00A0FF");

    Preferences::shared().setDisplayLastColor(false);
    delegate->redrawStatusButton();
    EXPECT_FALSE(restarted.statusItem.lastColor) << "unless the last color is not to be shown";
}

TEST_F(AppDelegateTest, WithoutATrayThePersonIsToldOnceHowToReachKro) {
    EXPECT_TRUE(fake.statusItem.notifications.empty()) << "the tray shows the icon";

    delegate.reset();
    FakeDesktop trayless;
    trayless.statusItem.inTray = false;
    delegate = std::make_unique<AppDelegate>(trayless.desktop());
    delegate->applicationDidFinishLaunching();
    environment.queue.advance(Seconds(120));
    ASSERT_EQ(trayless.statusItem.notifications.size(), 1u);
    const auto& message = trayless.statusItem.notifications[0];
    EXPECT_NE(message.find("Ctrl+Alt+P"), std::string::npos) << message;
    EXPECT_NE(message.find("kro open kro://picker"), std::string::npos) << message;
}

TEST_F(AppDelegateTest, EitherSettingPostingTheSharedNameRestartsTheImportTimerAndRedraws) {
    EXPECT_EQ(environment.queue.activeTimerCount(), 1u) << "only the poll timer while automatic import is off";
    const int redraws = fake.statusItem.redrawCount;
    Preferences::shared().setAutoImport(true);
    EXPECT_EQ(environment.queue.activeTimerCount(), 2u);
    EXPECT_GT(fake.statusItem.redrawCount, redraws);

    const int redrawsBefore = fake.statusItem.redrawCount;
    Preferences::shared().setColorBlindness(ColorBlindness::protanopia);
    EXPECT_EQ(environment.queue.activeTimerCount(), 2u) << "restarted, not doubled";
    EXPECT_GT(fake.statusItem.redrawCount, redrawsBefore);

    Preferences::shared().setAutoImport(false);
    EXPECT_EQ(environment.queue.activeTimerCount(), 1u);
}

TEST_F(AppDelegateTest, AutomaticImportTakesClipboardColoursIntoTheHistory) {
    Preferences::shared().setAutoImport(true);
    fake.clipboard.contents = "color: #ff0000; background: rgb(0, 0, 255)";
    environment.queue.advance(Seconds(1));
    EXPECT_EQ(User::shared()->history->colors.size(), 2u);
    EXPECT_EQ(fake.tooltip.messages.back(), "Colors Imported");
}

TEST_F(AppDelegateTest, NetworkChangesAskForOneFetchPerNewSatisfiedStatus) {
    fake.network.handler(NetworkStatus::satisfied);
    fake.network.handler(NetworkStatus::satisfied);
    fake.network.handler(NetworkStatus::unsatisfied);
    EXPECT_EQ(delegate->cloudFetchRequests, 1);
    fake.network.handler(NetworkStatus::satisfied);
    EXPECT_EQ(delegate->cloudFetchRequests, 2);
    delegate->applicationWillTerminate();
    EXPECT_TRUE(fake.network.cancelled);
}

TEST_F(AppDelegateTest, ReadyMessageOnlyWhenOnboardingIsNotDue) {
    environment.queue.advance(Seconds(5));
    EXPECT_TRUE(std::find(fake.tooltip.messages.begin(), fake.tooltip.messages.end(), "Kro is ready to use!") ==
                fake.tooltip.messages.end());

    Preferences::setNeedsOnboardingDisplay(false);
    AppDelegate second(fake.desktop());
    second.applicationDidFinishLaunching();
    environment.queue.advance(Seconds(2.9));
    EXPECT_TRUE(fake.tooltip.messages.empty() || fake.tooltip.messages.back() != "Kro is ready to use!");
    environment.queue.advance(Seconds(0.2));
    EXPECT_EQ(fake.tooltip.messages.back(), "Kro is ready to use!");
}

TEST_F(AppDelegateTest, TheFirstChangeAfterLaunchCanBeUndoneThroughARequest) {
    delegate->handleURL("kro://color/hex/FF0080/Pink");
    environment.queue.runDue();
    std::string reply;
    delegate->handleAgentRequest(R"({"undo":true})", [&reply](const std::string& line) { reply = line; });
    EXPECT_EQ(reply, R"({"ok":true,"lines":["Undone: the library has 1 palette and 0 history colors"]})");
    EXPECT_TRUE(User::shared()->history->colors.empty());
}

TEST_F(AppDelegateTest, RequestsOfTheWrongShapeAreRefusedInWords) {
    for (const char* line : {R"({"snapshot":"restore","uuid":5})", R"({"import":[1]})", R"({"undo":"yes"})",
                             R"({"snapshot":7})", "[1,2]", "{", R"({"redo":true})"}) {
        std::string reply;
        delegate->handleAgentRequest(line, [&reply](const std::string& answer) { reply = answer; });
        const auto answer = Json::parse(reply, nullptr, false);
        ASSERT_TRUE(answer.is_object()) << line;
        EXPECT_EQ(answer["ok"], false) << line;
        EXPECT_TRUE(answer["error"].is_string()) << line;
    }
}

TEST_F(AppDelegateTest, AFailingDiskIsOneNoticeThatOutlastsTheActionsOwnTooltip) {
    environment.files.failWrites = true;
    delegate->handleURL("kro://color/hex/00FF00/Green");
    delegate->handleURL("kro://color/hex/0000FF/Blue");
    environment.queue.runDue();
    const auto notice = "Not saved: cannot save /home/test/data/kroapp.Kro/v5/user.json: No space left on device";
    EXPECT_EQ(std::count(fake.tooltip.messages.begin(), fake.tooltip.messages.end(), notice), 1);
    EXPECT_EQ(fake.tooltip.messages.back(), notice);
}

TEST_F(AppDelegateTest, ThemeFollowsThePreference) {
    Preferences::shared().setAppTheme(AppTheme::dark);
    Preferences::shared().setAppTheme(AppTheme::automatic);
    ASSERT_GE(fake.appearance.applied.size(), 3u);
    EXPECT_EQ(fake.appearance.applied[fake.appearance.applied.size() - 2], std::optional<bool>(true));
    EXPECT_EQ(fake.appearance.applied.back(), std::nullopt);
}

TEST(AppDelegateWindows, LaunchCreatesTheControllersInOrderAndTheActionsShortcutsAndTrayOpenThem) {
    TestEnvironment environment;
    Preferences::resetSharedForTesting();
    User::resetShared();
    FakeDesktop fake;
    FakeWindowFactory windows;
    auto desktop = fake.desktop();
    desktop.windows = &windows;
    AppDelegate delegate(desktop);
    delegate.applicationDidFinishLaunching();
    environment.queue.runDue();

    EXPECT_EQ(windows.order, (std::vector<WindowKind>{WindowKind::menu, WindowKind::main, WindowKind::preferences,
                                                       WindowKind::contrast, WindowKind::colorPanel,
                                                       WindowKind::onboarding, WindowKind::dock}));
    ASSERT_TRUE(windows.menu && windows.main);

    // The tray menu gains the windows this build has, between Pick Colour and Quit.
    std::vector<std::string> titles;
    for (const auto& item : fake.statusItem.menu) titles.push_back(item.title);
    EXPECT_EQ(std::vector<std::string>(titles.begin(), titles.begin() + 3),
              (std::vector<std::string>{"Pick Color", "Show Menu Window", "Open Library"}));
    fake.statusItem.menu[2].action();
    EXPECT_EQ(windows.main->shown, 1);

    // A left click toggles the menu window; its shortcut opens it, the library's shortcut the library.
    fake.statusItem.onActivated();
    EXPECT_TRUE(windows.menu->visible);
    fake.statusItem.onActivated();
    EXPECT_FALSE(windows.menu->visible);
    delegate.hotKeyDidPress(HotKeyIdentifier::openStatusMenu);
    delegate.hotKeyDidPress(HotKeyIdentifier::openMainMenu);
    EXPECT_TRUE(windows.menu->visible);
    EXPECT_EQ(windows.main->shown, 2);

    // Without a valid licence state no window opens.
    delegate.appState = AppState::invalid;
    delegate.openMainWindow();
    EXPECT_EQ(windows.main->shown, 2);
    delegate.appState = AppState::valid;

    // A pick for the inspector goes to the library window and nowhere else; a standard pick says so there.
    const auto orange = ColorValue::rgb(1, 0.5, 0);
    delegate.pickerDidPick(orange, PickerSource::inspector);
    ASSERT_EQ(windows.main->inspected.size(), 1u);
    EXPECT_TRUE(User::shared()->history->colors.empty());
    delegate.pickerDidPick(orange, PickerSource::standard);
    EXPECT_EQ(windows.main->notices, (std::vector<std::string>{"Color Created"}));

    // The "contrast" and "settings" commands open their windows at the pair and the pane; a bad one opens nothing.
    delegate.handleURL("kro://contrast/hex/777777,FFFFFF");
    ASSERT_EQ(windows.contrast->pairs.size(), 1u);
    EXPECT_TRUE(windows.contrast->visible);
    EXPECT_NEAR(windows.contrast->pairs[0].first.red(), 0x77 / 255.0, 1e-9);
    EXPECT_NEAR(windows.contrast->pairs[0].second.blue(), 1.0, 1e-9);
    delegate.handleURL("kro://contrast/hex/777777");
    EXPECT_EQ(windows.contrast->pairs.size(), 1u);
    delegate.handleURL("kro://settings/formats");
    delegate.handleURL("kro://settings/nowhere");
    EXPECT_EQ(windows.preferences->panes, std::vector<int>{preferencesPane("formats")->number});
    EXPECT_EQ(windows.preferences->shown, 1);

    // The loupe's contrast mode hands its pair over; the shortcut opens the checker with a random pair.
    delegate.pickerDidPickContrast(orange, ColorValue::rgb(0, 0, 0));
    delegate.hotKeyDidPress(HotKeyIdentifier::openContrastChecker);
    ASSERT_EQ(windows.contrast->pairs.size(), 3u);
    EXPECT_NEAR(windows.contrast->pairs[1].first.green(), 0.5, 1e-9);
}
