#include "BridgeTestSupport.h"
#include "bridges/InkscapeBridge.h"

using namespace kro;
using namespace kro::testing;

namespace {

// What Inkscape 1.2 puts on the clipboard for a selected square, cut to the parts that matter.
std::string clipboardDocument(const std::string& style) {
    return R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?>
<!-- Created with Inkscape (http://www.inkscape.org/) -->
<svg version="1.1" id="svg9" xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape"
   xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd" xmlns="http://www.w3.org/2000/svg"><defs
     id="defs13" /><sodipodi:namedview id="namedview11" pagecolor="#ffffff" bordercolor="#000000" /><inkscape:clipboard
     style=")" + style + R"(" min="18,18" max="182,182" /><g id="g15"><rect id="rect1" x="20" y="20" width="160" height="160"
       style="fill:#010203;stroke:#040506" /></g></svg>
)";
}

class InkscapeBridgeTest : public ::testing::Test {
protected:
    std::shared_ptr<std::optional<std::vector<std::string>>> get(PickerPlugin slot) {
        auto got = std::make_shared<std::optional<std::vector<std::string>>>();
        bridge.getColor(slot, [got](const std::vector<ColorValue>& colors) { *got = hexOf(colors); });
        return got;
    }

    TestEnvironment environment;
    FakeSessionBus bus;
    FakeClipboard clipboard;
    int copies = 0;
    bool inkscapeWindow = true;
    InkscapeBridge bridge{bus, &clipboard, [this] {
                              ++copies;
                              return inkscapeWindow;
                          }};
};

}  // namespace

TEST(InkscapeActionsTest, ActionsCarryTheirParameterAsAStringVariant) {
    EXPECT_EQ(InkscapeActions::setProperty(PickerPlugin::secondary, {0, 192, 255}),
              (DBusCall{"org.inkscape.Inkscape", "/org/inkscape/Inkscape", "org.gtk.Actions", "Activate",
                        {std::string("object-set-property"), DBusStringVariants{{"stroke,#00c0ff"}}, DBusEmptyDictionary{}}}));
    EXPECT_EQ(InkscapeActions::activate("copy").arguments.at(1), DBusArgument(DBusStringVariants{}));
}

TEST(InkscapeActionsTest, TheSelectionsStyleGivesFillAndStrokeAndNothingThatIsNotAPlainColour) {
    const auto read = [](const std::string& style, PickerPlugin slot) {
        const auto color = InkscapeActions::readClipboardStyle(clipboardDocument(style), slot);
        return color ? hexOf(*color) : "none";
    };
    const std::string style = "opacity:1;fill:#ff0080;fill-opacity:1;stroke:#112233;stroke-width:4;stop-color:#000000";
    EXPECT_EQ(read(style, PickerPlugin::primary), "FF0080");
    EXPECT_EQ(read(style, PickerPlugin::secondary), "112233");
    EXPECT_EQ(read(" fill : RebeccaPurple ; stroke:#0f8", PickerPlugin::primary), "663399");
    EXPECT_EQ(read("fill:#0f8", PickerPlugin::primary), "00FF88");
    for (const auto* plain : {"fill:none", "fill:url(#linearGradient1)", "fill:#ff008", "fill:#gg0000", "stroke:#ff0080", ""}) {
        EXPECT_EQ(read(plain, PickerPlugin::primary), "none") << plain;
    }
    // Not Inkscape's document: our own colour text, a broken one, or an SVG without the clipboard element.
    for (const auto* other : {"#FF0080", "<svg><inkscape:clipboard style=\"fill:#ff0080\"", R"(<svg xmlns="http://www.w3.org/2000/svg"><rect style="fill:#ff0080"/></svg>)",
                              "<svg xmlns:i=\"http://www.inkscape.org/namespaces/inkscape\"><i:clipboard fill=\"#ff0080\"/></svg>"}) {
        EXPECT_FALSE(InkscapeActions::readClipboardStyle(other, PickerPlugin::primary)) << other;
    }
    EXPECT_TRUE(InkscapeActions::readClipboardStyle(
        "<svg xmlns:i=\"http://www.inkscape.org/namespaces/inkscape\"><i:clipboard style=\"fill:#ff0080\"/></svg>", PickerPlugin::primary))
        << "the namespace decides, not the prefix";
}

TEST_F(InkscapeBridgeTest, AGetCopiesThroughTheActionThenWaitsForInkscapesDocumentOnTheClipboard) {
    clipboard.contents = "#FF0080";  // our own text, until the clipboard changes hands
    auto got = get(PickerPlugin::primary);
    ASSERT_EQ(bus.calls.size(), 1u);
    EXPECT_EQ(bus.calls[0].call, InkscapeActions::activate("copy"));
    bus.answer();
    environment.queue.advance(Seconds(0.1));
    EXPECT_FALSE(*got);
    clipboard.contents = clipboardDocument("fill:#336699;stroke:none");
    environment.queue.advance(Seconds(0.05));
    EXPECT_EQ(*got, std::vector<std::string>{"336699"});
    EXPECT_EQ(copies, 0);

    // Nothing selected: Inkscape copies nothing, and the read gives up well inside the time limit.
    clipboard.contents = "#FF0080";
    got = get(PickerPlugin::secondary);
    bus.answer();
    environment.queue.advance(Seconds(1));
    EXPECT_EQ(*got, std::vector<std::string>{});
}

TEST_F(InkscapeBridgeTest, CtrlCStandsInOnlyWhenTheActionsAreMissingNotWhenInkscapeHangs) {
    LogCapture log;
    auto got = get(PickerPlugin::primary);
    bus.answer("org.freedesktop.DBus.Error.NoReply: Did not receive a reply");
    EXPECT_EQ(*got, std::vector<std::string>{});
    EXPECT_EQ(copies, 0) << "a hung Inkscape is not sent keys, and its clipboard is not read";

    clipboard.contents = clipboardDocument("fill:#abcdef");
    got = get(PickerPlugin::primary);
    bus.answer("org.freedesktop.DBus.Error.ServiceUnknown: The name org.inkscape.Inkscape was not provided");
    EXPECT_EQ(copies, 1);
    EXPECT_EQ(*got, std::vector<std::string>{"ABCDEF"});

    inkscapeWindow = false;
    got = get(PickerPlugin::primary);
    bus.answer("org.freedesktop.DBus.Error.ServiceUnknown: The name org.inkscape.Inkscape was not provided");
    EXPECT_EQ(*got, std::vector<std::string>{}) << "with no window to type into, nothing is copied or read";
    EXPECT_NE(log.text().find("no window of it can copy"), std::string::npos);
}

TEST_F(InkscapeBridgeTest, ASetTakesEffectWhenTheActionRuns) {
    std::vector<bool> results;
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 128 / 255.0), [&](bool taken) { results.push_back(taken); });
    EXPECT_EQ(bus.calls[0].call, InkscapeActions::setProperty(PickerPlugin::primary, {255, 0, 128}));
    bus.answer();
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 0), [&](bool taken) { results.push_back(taken); });
    bus.answer("org.freedesktop.DBus.Error.ServiceUnknown: gone");
    bridge.setColor(PickerPlugin::primary, ColorValue::rgb(1, 0, 0), [&](bool taken) { results.push_back(taken); });
    environment.queue.advance(Seconds(2.1));
    EXPECT_EQ(results, (std::vector<bool>{true, false, false}));
}
