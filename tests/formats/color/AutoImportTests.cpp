#include <gtest/gtest.h>

#include "formats/color/AutoImport.h"
#include "formats/color/ColorConversions.h"

using namespace kro;

namespace {

// A clipboard the test writes to, and a record of every batch of colours handed over.
struct AutoImportFixture : ::testing::Test {
    std::optional<std::string> clipboard;
    std::vector<std::vector<std::string>> batches;
    AutoImport autoImport{[this] { return clipboard; }, allImportColorPatterns(), [this](const std::vector<ColorValue>& colors) {
                              std::vector<std::string> hexes;
                              for (const auto& color : colors) hexes.push_back(hexText(color));
                              batches.push_back(hexes);
                          }};

    std::optional<std::string> copyAndTick(std::string text) {
        clipboard = std::move(text);
        return autoImport.tick();
    }
};

using Batches = std::vector<std::vector<std::string>>;

}  // namespace

TEST_F(AutoImportFixture, ImportsAChangedTextOnceAndTellsHowManyColours) {
    EXPECT_EQ(autoImport.tick(), std::nullopt);  // an empty clipboard
    EXPECT_EQ(autoImport.autoImportLast(), std::nullopt);

    EXPECT_EQ(copyAndTick("color: #336699;"), "Color Imported");
    EXPECT_EQ(autoImport.tick(), std::nullopt);  // the same text, still on the clipboard
    EXPECT_EQ(copyAndTick("color: #336699;"), std::nullopt);
    EXPECT_EQ(copyAndTick("rgb(1, 2, 3) and hsl(120, 100%, 50%)"), "Colors Imported");
    EXPECT_EQ(batches, (Batches{{"336699"}, {"010203", "00FF00"}}));
    EXPECT_EQ(autoImport.autoImportLast(), "rgb(1, 2, 3) and hsl(120, 100%, 50%)");
}

TEST_F(AutoImportFixture, SkipsColoursImportedBeforeByTheirHex) {
    copyAndTick("#ff0000");
    // "red" is the same hex as before: only blue is new.
    EXPECT_EQ(copyAndTick("red and blue"), "Color Imported");
    // Back to an earlier text: it is scanned again but brings nothing new.
    EXPECT_EQ(copyAndTick("#ff0000"), std::nullopt);
    EXPECT_EQ(autoImport.autoImportLast(), "#ff0000");
    EXPECT_EQ(copyAndTick("no color here"), std::nullopt);
    // Two equal new colours in one text are both handed over.
    EXPECT_EQ(copyAndTick("lime #00FF00"), "Colors Imported");
    EXPECT_EQ(batches, (Batches{{"FF0000"}, {"0000FF"}, {"00FF00", "00FF00"}}));
    EXPECT_EQ(autoImport.autoImportColors(), (std::set<std::string>{"0000FF", "00FF00", "FF0000"}));
}

TEST_F(AutoImportFixture, FollowsTheEnabledPatterns) {
    autoImport.setPatterns({ImportColorPattern::cssHEX});
    EXPECT_EQ(copyAndTick("red #0000ff"), "Color Imported");
    autoImport.setPatterns({});
    EXPECT_EQ(copyAndTick("green #00ff00"), std::nullopt);
    EXPECT_EQ(batches, (Batches{{"0000FF"}}));
}
