#include "BridgeTestSupport.h"
#include "bridges/GimpBridge.h"

using namespace kro;
using namespace kro::testing;

namespace {

class GimpBridgeTest : public ::testing::Test {
protected:
    std::string script(size_t index = 0) const { return std::get<std::string>(bus.calls.at(index).call.arguments.at(1)); }

    TestEnvironment environment;
    FakeSessionBus bus;
    FakeDropFolder drop;
    GimpBridge bridge{bus, drop};
};

}  // namespace

TEST(GimpScriptTest, ScriptsSetAndReportTheSlotIntoTheQuotedAnswerFile) {
    const auto set = GimpScript::setColor(PickerPlugin::secondary, {255, 0, 128}, "/run/a \"b\"\\c.answer");
    EXPECT_EQ(set,
              "(let ((port (open-output-file \"/run/a \\\"b\\\"\\\\c.answer\"))) (gimp-context-set-background '(255 0 128)) "
              "(write (gimp-context-get-background) port) (display \" kro-end\" port) (close-output-port port))");
    EXPECT_EQ(GimpScript::getColor(PickerPlugin::primary, "/a"),
              "(let ((port (open-output-file \"/a\"))) (write (gimp-context-get-foreground) port) (display \" kro-end\" port) "
              "(close-output-port port))");
    const auto call = GimpScript::batchRun("(x)");
    EXPECT_EQ(call, (DBusCall{"org.gimp.GIMP.UI", "/org/gimp/GIMP/UI", "org.gimp.GIMP.UI", "BatchRun",
                              {std::string("plug-in-script-fu-eval"), std::string("(x)")}}));
}

TEST(GimpScriptTest, AnswersOfGimp2And3ReadAsColoursAndNothingElseDoes) {
    const auto read = [](const std::string& text) -> std::string {
        const auto color = GimpScript::readAnswer(text);
        if (!color) return "none";
        return hexOf(*color) + (color->alpha() < 1 ? " alpha" : "");
    };
    EXPECT_EQ(read("((255 0 128)) kro-end"), "FF0080");  // GIMP 2.10
    EXPECT_EQ(read("(255 0 128) kro-end\n"), "FF0080");  // a bare list
    EXPECT_EQ(read("((0 192 255 128)) kro-end"), "00C0FF alpha");
    EXPECT_EQ(read("((128)) kro-end"), "808080");
    EXPECT_EQ(read("((127.6 0.4 255.0)) kro-end"), "8000FF");
    for (const auto* bad : {"((255 0 128))", "((255 0 128)) kro-end junk", "((256 0 0)) kro-end", "((-1 0 0)) kro-end",
                            "((1 2 3 4 5)) kro-end", "(()) kro-end", "((1 x 3)) kro-end", "((1 2 3)) x kro-end", ")( kro-end",
                            "((nan 0 0)) kro-end", "", "kro-end"}) {
        EXPECT_EQ(read(bad), "none") << bad;
    }
}

TEST_F(GimpBridgeTest, AGetLearnsTheColourFromTheAnswerFileNotFromTheBusReply) {
    std::vector<std::string> got = {"unanswered"};
    bridge.getColor(PickerPlugin::primary, [&](const std::vector<ColorValue>& colors) { got = hexOf(colors); });
    ASSERT_EQ(bus.calls.size(), 1u);
    const auto name = drop.awaited();
    ASSERT_FALSE(name.empty());
    EXPECT_NE(script().find(drop.folder + "/" + name), std::string::npos);
    bus.answer();  // BatchRun's "true" comes before the command runs, and says nothing
    EXPECT_EQ(got, std::vector<std::string>{"unanswered"});
    drop.write(name, "((255 0 128)) kro-end");
    EXPECT_EQ(got, std::vector<std::string>{"FF0080"});
    environment.queue.advance(Seconds(3));
    EXPECT_EQ(got, std::vector<std::string>{"FF0080"}) << "the time limit after an answer changes nothing";
}

TEST_F(GimpBridgeTest, ASetSucceedsOnlyWhenGimpReportsTheColourSent) {
    std::vector<std::optional<bool>> results;
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 128 / 255.0), [&](bool taken) { results.push_back(taken); });
    EXPECT_NE(script().find("(gimp-context-set-foreground '(255 0 128))"), std::string::npos);
    drop.write(drop.awaited(), "((255 0 128)) kro-end");
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 0), [&](bool taken) { results.push_back(taken); });
    drop.write(drop.awaited(), "((0 0 0)) kro-end");  // a colour GIMP refused leaves the old one
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 0), [&](bool taken) { results.push_back(taken); });
    drop.write(drop.awaited(), "");  // Script-Fu failed before writing
    EXPECT_EQ(results, (std::vector<std::optional<bool>>{true, false, false}));
}

TEST_F(GimpBridgeTest, ABusErrorFailsAtOnceAndSilenceFailsAtTheTimeLimitWithOneLogLine) {
    LogCapture log;
    std::vector<std::vector<ColorValue>> answers;
    bridge.getColor(PickerPlugin::secondary, [&](const std::vector<ColorValue>& colors) { answers.push_back(colors); });
    bus.answer("org.freedesktop.DBus.Error.ServiceUnknown: The name org.gimp.GIMP.UI was not provided");
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_TRUE(answers[0].empty());

    bool taken = true;
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(0, 0, 1), [&](bool result) { taken = result; });
    const auto name = drop.awaited();
    bus.answer();
    environment.queue.advance(Seconds(1.9));
    EXPECT_TRUE(taken);
    environment.queue.advance(Seconds(0.2));
    EXPECT_FALSE(taken);
    EXPECT_NE(std::find(drop.forgotten.begin(), drop.forgotten.end(), name), drop.forgotten.end()) << "a late file is removed unread";
    drop.write(name, "((0 0 255)) kro-end");
    EXPECT_FALSE(taken);
    EXPECT_EQ(answers.size(), 1u);
    const auto text = log.text();
    EXPECT_NE(text.find("GIMP get background: GIMP is not reachable on the session bus (org.freedesktop.DBus.Error.ServiceUnknown"),
              std::string::npos);
    EXPECT_NE(text.find("GIMP set foreground: no answer within the time limit"), std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
}
