// The agent's side of the bridges: a plugin-mode pick, the get shortcuts, copyColor's application targets,
// the picker's mode menu and the requests of `kro get` and `kro send`, on fake channels.
#include "BridgeTestSupport.h"
#include "app/AppDelegate.h"
#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "library/Preferences.h"
#include "library/Settings.h"
#include "library/User.h"
#include "picker/HotKeys.h"
#include "platform/Json.h"

using namespace kro;
using namespace kro::testing;

namespace {

class ApplicationDeliveryTest : public ::testing::Test, protected BridgeFakes, protected PickerFakesForBridges {
protected:
    void SetUp() override {
        Preferences::resetSharedForTesting();
        Settings::resetSharedForTesting();
        User::resetShared();
        ColorFormats::resetShared();
        SmartFormats::resetShared();
        HotKeys::resetSharedForTesting();
        Plugin::resetSharedForTesting();
        auto desktop = fake.desktop();
        desktop.clipboard = &clipboard;
        desktop.pointer = &pointer;
        desktop.screenCapture = &screen;
        desktop.loupeWindow = &window;
        desktop.popUpMenu = &menu;
        desktop.keySimulator = &keys;
        desktop.sound = &sound;
        desktop.hotKeyCenter = &hotKeys;
        desktop.activeApplication = &applications;
        desktop.sessionBus = &bus;
        desktop.dropFolder = &drop;
        desktop.localSockets = &sockets;
        delegate = std::make_unique<AppDelegate>(desktop);
        delegate->applicationDidFinishLaunching();
        environment.queue.runDue();
        applications.bringToFront(gimpWindow());
    }
    void TearDown() override {
        delegate.reset();
        HotKeys::resetSharedForTesting();
        Plugin::resetSharedForTesting();
    }

    std::string script(size_t index) const { return std::get<std::string>(bus.calls.at(index).call.arguments.at(1)); }
    // GIMP runs the last queued command and reports `answer`.
    void gimpAnswers(const std::string& answer) {
        bus.answer();
        drop.write(drop.awaited(), answer);
        environment.queue.runDue();
    }
    std::vector<std::string> historyHex() const {
        std::vector<std::string> hex;
        for (const auto& color : User::shared()->history->colors) hex.push_back(color->hex);
        return hex;
    }
    // The reply, once the agent has given it.
    std::shared_ptr<std::optional<Json>> request(const Json& line) {
        auto reply = std::make_shared<std::optional<Json>>();
        delegate->handleAgentRequest(compactText(line), [reply](const std::string& text) { *reply = Json::parse(text); });
        return reply;
    }
    std::string error(const Json& line) {
        const auto reply = request(line);
        return *reply ? (*reply)->value("error", "") : "no reply";
    }

    TestEnvironment environment;
    FakeDesktop fake;
    std::unique_ptr<AppDelegate> delegate;
};

const ColorValue kPink = ColorValue::rgb(1, 0, 128 / 255.0);

}  // namespace

TEST_F(ApplicationDeliveryTest, APluginModePickGoesToTheSlotAndTheClipboardButNotTheHistory) {
    delegate->pickerDidSend(kPink, PickerPlugin::secondary);
    EXPECT_EQ(clipboard.contents, ColorFormats::shared().clipboardString(kPink, smartFormatName("org.gimp.GIMP")));
    EXPECT_EQ(sound.played, std::vector<std::string>{"color"});
    ASSERT_EQ(bus.calls.size(), 1u);
    EXPECT_NE(script(0).find("(gimp-context-set-background '(255 0 128))"), std::string::npos);
    gimpAnswers("((255 0 128)) kro-end");
    EXPECT_TRUE(historyHex().empty());

    // A program without an entry gets nothing, and the colour still reaches the clipboard.
    applications.bringToFront(terminalWindow());
    delegate->pickerDidSend(ColorValue::rgb(0, 0, 1), PickerPlugin::primary);
    EXPECT_EQ(clipboard.contents, ColorFormats::shared().clipboardString(ColorValue::rgb(0, 0, 1)));
    EXPECT_EQ(bus.calls.size(), 1u);
}

TEST_F(ApplicationDeliveryTest, TheGetShortcutPutsTheColourInTheHistoryAndHandsItBackAsTheApplicationsPrimary) {
    hotKeys.press(static_cast<int>(HotKeyIdentifier::getSecondaryColor));
    environment.queue.runDue();
    ASSERT_EQ(bus.calls.size(), 1u);
    EXPECT_NE(script(0).find("(gimp-context-get-background)"), std::string::npos);
    gimpAnswers("((0 192 255)) kro-end");
    EXPECT_EQ(historyHex(), std::vector<std::string>{"00C0FF"});
    // Either slot read is delivered as target 1: GIMP's foreground is sent the colour.
    ASSERT_EQ(bus.calls.size(), 2u);
    EXPECT_NE(script(1).find("(gimp-context-set-foreground '(0 192 255))"), std::string::npos);
    gimpAnswers("((0 192 255)) kro-end");
    environment.queue.runDue();
    EXPECT_EQ(clipboard.contents, ColorFormats::shared().clipboardString(ColorValue::rgb(0, 192 / 255.0, 1), smartFormatName("org.gimp.GIMP")));
    const auto& tooltips = fake.tooltip.messages;
    EXPECT_NE(std::find_if(tooltips.begin(), tooltips.end(), [](const std::string& m) { return m.find("from GIMP") != std::string::npos; }),
              tooltips.end());
    EXPECT_NE(std::find_if(tooltips.begin(), tooltips.end(), [](const std::string& m) { return m.find("sent to GIMP") != std::string::npos; }),
              tooltips.end());
}

TEST_F(ApplicationDeliveryTest, ARefusedSetFallsBackToThePlainDelivery) {
    delegate->copyColor(Color::make(kPink), true, ColorDeliveryTarget::primary);
    bus.answer("org.freedesktop.DBus.Error.ServiceUnknown: gone");
    environment.queue.runDue();
    EXPECT_EQ(clipboard.contents, ColorFormats::shared().clipboardString(kPink));
    EXPECT_EQ(fake.tooltip.messages.back(), ColorFormats::shared().pickerString(kPink));
    ASSERT_TRUE(delegate->clipboardColor);
}

TEST_F(ApplicationDeliveryTest, SendToSoftwareIsOfferedWhileTheApplicationInFrontHasAnIcon) {
    const auto titles = [this] {
        menu.items.clear();
        delegate->picker().showModeMenu();
        std::vector<std::string> shown;
        for (const auto& item : menu.items) shown.push_back(item.title + (item.icon.empty() ? "" : " (icon)"));
        return shown;
    };
    EXPECT_EQ(titles(), (std::vector<std::string>{"Pick Color", "Multiple Colors", "Send to software (icon)", "Check Contrast"}));
    applications.bringToFront(terminalWindow());
    EXPECT_EQ(titles(), (std::vector<std::string>{"Pick Color", "Multiple Colors", "Check Contrast"}));
    Plugin::shared().load(R"({"org.gimp.GIMP": {"name": "GIMP", "windowClasses": ["gimp"], "icon": "bm90IGEgcGljdHVyZQ=="}})");
    applications.bringToFront(gimpWindow());
    EXPECT_EQ(titles().size(), 3u) << "an icon that is not a picture";
}

TEST_F(ApplicationDeliveryTest, CommandLineRequestsReadAndSendAndSayWhatWentWrong) {
    // A read from the command line: the colour is printed and kept, and nothing is sent back.
    auto reply = request({{"bridge", "get"}, {"slot", "primary"}, {"app", "GIMP"}});
    EXPECT_FALSE(*reply);
    gimpAnswers("((255 0 128)) kro-end");
    ASSERT_TRUE(*reply);
    EXPECT_EQ(**reply, (Json{{"ok", true}, {"lines", {"FF0080"}}}));
    EXPECT_EQ(historyHex(), std::vector<std::string>{"FF0080"});
    EXPECT_EQ(bus.calls.size(), 1u);

    reply = request({{"bridge", "set"}, {"slot", "secondary"}, {"color", "00C0FF"}});
    gimpAnswers("((0 0 0)) kro-end");
    ASSERT_TRUE(*reply);
    EXPECT_EQ((*reply)->value("error", ""), "GIMP did not take the color; it is on the clipboard");
    EXPECT_EQ(clipboard.contents, ColorFormats::shared().clipboardString(ColorValue::rgb(0, 192 / 255.0, 1), smartFormatName("org.gimp.GIMP")));

    EXPECT_EQ(error({{"bridge", "set"}, {"slot", "primary"}, {"color", "(gimp-quit 0)"}}), "the color is not understood");
    EXPECT_EQ(error({{"bridge", "get"}, {"slot", "tertiary"}}), "the agent did not understand the request");
    EXPECT_EQ(error({{"bridge", "get"}, {"app", "Photoshop"}}), "no design application is known as Photoshop");
    applications.bringToFront(terminalWindow());
    EXPECT_EQ(error({{"bridge", "get"}}), "the application in front (XTerm) has no bridge; name one with --app");
    EXPECT_EQ(bus.calls.size(), 2u) << "no refused request reached GIMP";
}
