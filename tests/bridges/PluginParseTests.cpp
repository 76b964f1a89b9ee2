#include "BridgeTestSupport.h"
#include "bridges/PluginParse.h"

using namespace kro;
using namespace kro::testing;

TEST(PluginParseTest, HexColoursComeOutOpaqueInTextOrder) {
    const auto colors = PluginParse::colors("stroke #00c0ff; fill FF0080, then #12345");
    EXPECT_EQ(hexOf(colors), (std::vector<std::string>{"00C0FF", "FF0080"}));
    for (const auto& color : colors) EXPECT_EQ(color.alpha(), 1.0);
    // The pattern has no word boundaries: the first six of seven digits count, as "beaded" does.
    EXPECT_EQ(hexOf(PluginParse::colors("1234567 beaded")), (std::vector<std::string>{"123456", "BEADED"}));
    EXPECT_TRUE(PluginParse::colors("no color here").empty());
}

TEST(PluginParseTest, ColourNamesOfTheListCountAsTheirHexInPlace) {
    EXPECT_EQ(hexOf(PluginParse::colors("Hot Pink, then #000001 and hotpink or HOT-PINK")),
              (std::vector<std::string>{"FF69B4", "000001", "FF69B4", "FF69B4"}));
    // The longest name wins over the shorter names inside it, up to the list's six words.
    EXPECT_EQ(hexOf(PluginParse::colors("a Light Goldenrod Yellow wall")), std::vector<std::string>{"FAFAD2"});
    EXPECT_EQ(hexOf(PluginParse::colors("blue with a hint of purple")), std::vector<std::string>{"533CC6"});
    // Digits after "#" are a hex colour even when they spell a name's key; two spaces part two names.
    EXPECT_EQ(PluginParse::replacingColorNames("#red0ff sky  blue"), "#red0ff #82CAFC  #0000FF");
}

TEST(PluginParseTest, HostileTextEndsWithoutInventingColours) {
    std::string bytes = "\xff\xfe\xc3(\x80 #zzzzzz \xf0\x28\x8c\x28";
    EXPECT_TRUE(PluginParse::colors(bytes).empty());
    // Two megabytes of near-colours: read to the end or cut by the matcher's time limit, never hung.
    std::string large;
    for (int i = 0; i < 300000; ++i) large += "#12345 ";
    EXPECT_TRUE(PluginParse::colors(large).empty());
}

TEST(PluginParseTest, APatternThatDoesNotCompileLogsUnderItsName) {
    LogCapture log;
    EXPECT_TRUE(PluginRegularExpression::evaluate("([", "text").empty());
    EXPECT_NE(log.text().find("evaluate(regex:text:)"), std::string::npos);
}
