#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "formats/color/ColorConversions.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "platform/testing/FakeDesktop.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;
using namespace kro::testing;

namespace {

class AppDelegateTest : public ::testing::Test {
protected:
    void SetUp() override {
        Preferences::resetSharedForTesting();
        User::resetShared();
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

TEST_F(AppDelegateTest, MalformedCommandsDoNothingAndSayNothing) {
    environment.notifications.clearPostedNames();
    const auto before = fake.tooltip.messages.size();
    for (const char* url : {"kro://color/hex/FF0080", "kro://color/hex/FF0080/a/b", "kro://unknown/x/y/z",
                            "kro://color/rgba/1-2-x-1/Bad", "kro://palette/rgba/1-2-3-1,1-2/P", "kro://",
                            "kro://color/hex/FF0080/Raw Space", "kro://contrast/rgba/1-2-3-1,x/"}) {
        delegate->handleURL(url);
    }
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
    EXPECT_FALSE(restarted.statusItem.lastColor) << "unless the last colour is not to be shown";
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

TEST_F(AppDelegateTest, ThemeFollowsThePreference) {
    Preferences::shared().setAppTheme(AppTheme::dark);
    Preferences::shared().setAppTheme(AppTheme::automatic);
    ASSERT_GE(fake.appearance.applied.size(), 3u);
    EXPECT_EQ(fake.appearance.applied[fake.appearance.applied.size() - 2], std::optional<bool>(true));
    EXPECT_EQ(fake.appearance.applied.back(), std::nullopt);
}
