#include "BridgeTestSupport.h"
#include "bridges/KritaBridge.h"

using namespace kro;
using namespace kro::testing;

TEST(KritaProtocolTest, RequestsAreOneJsonLineEach) {
    EXPECT_EQ(KritaProtocol::getRequest(PickerPlugin::secondary), R"({"op":"get","slot":"secondary"})");
    EXPECT_EQ(KritaProtocol::setRequest(PickerPlugin::primary, {255, 0, 128}), R"({"op":"set","slot":"primary","color":"#ff0080"})");
    EXPECT_EQ(KritaProtocol::socketPath("/run/user/1000"), "/run/user/1000/kroapp.Kro.krita.socket");
}

TEST(KritaProtocolTest, RepliesGiveAColourOrAReasonAndNeverAColourThatWasNotSent) {
    auto reply = KritaProtocol::readReply(R"({"ok": true, "color": "#ff0080"})");
    ASSERT_TRUE(reply.ok && reply.color);
    EXPECT_EQ(hexOf(*reply.color), "FF0080");
    EXPECT_TRUE(KritaProtocol::readReply(R"({"ok": true})").ok);
    reply = KritaProtocol::readReply(R"({"ok": false, "error": "no image is open in Krita"})");
    EXPECT_FALSE(reply.ok);
    EXPECT_EQ(reply.error, "no image is open in Krita");
    for (const auto* bad : {"", "{", "[]", R"({"ok": "yes", "color": "#ff0080"})", R"({"ok": true, "color": "#ff008"})",
                            R"({"ok": true, "color": 16711808})", R"({"color": "#ff0080"})", "\xff\xfe"}) {
        reply = KritaProtocol::readReply(bad);
        EXPECT_FALSE(reply.ok) << bad;
        EXPECT_FALSE(reply.color) << bad;
    }
}

TEST(KritaBridgeTest, TheBridgeAsksThePluginsSocketAndSaysHowToInstallItWhenNoneAnswers) {
    TestEnvironment environment;
    FakeLocalSocketClient sockets;
    KritaBridge bridge(sockets, "/run/user/1000/kroapp.Kro.krita.socket");
    LogCapture log;

    std::vector<std::vector<std::string>> got;
    bridge.getColor(PickerPlugin::primary, [&](const std::vector<ColorValue>& colors) { got.push_back(hexOf(colors)); });
    EXPECT_EQ(sockets.exchanges.at(0).path, "/run/user/1000/kroapp.Kro.krita.socket");
    EXPECT_EQ(sockets.exchanges.at(0).line, KritaProtocol::getRequest(PickerPlugin::primary));
    sockets.reply(R"({"ok": true, "color": "#00c0ff"})");
    bridge.getColor(PickerPlugin::primary, [&](const std::vector<ColorValue>& colors) { got.push_back(hexOf(colors)); });
    sockets.reply(std::nullopt, "the socket belongs to another user");
    bridge.getColor(PickerPlugin::primary, [&](const std::vector<ColorValue>& colors) { got.push_back(hexOf(colors)); });
    sockets.reply(R"({"ok": true})");  // a get's answer without its colour
    EXPECT_EQ(got, (std::vector<std::vector<std::string>>{{"00C0FF"}, {}, {}}));
    EXPECT_NE(log.text().find("(the socket belongs to another user); install it with `kro krita-plugin install`"), std::string::npos);

    std::vector<bool> set;
    bridge.setColor(PickerPlugin::secondary, ColorValue::rgb(0, 0, 1), [&](bool taken) { set.push_back(taken); });
    sockets.reply(R"({"ok": false, "error": "no image is open in Krita"})");
    bridge.setColor(PickerPlugin::secondary, ColorValue::rgb(0, 0, 1), [&](bool taken) { set.push_back(taken); });
    environment.queue.advance(Seconds(2.1));
    sockets.reply(R"({"ok": true})");  // too late
    EXPECT_EQ(set, (std::vector<bool>{false, false}));
}
