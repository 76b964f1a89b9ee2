// `kro format` and `kro formats`, on the shipped catalogue and on the user's own.
#include <gtest/gtest.h>

#include <sstream>

#include "CommandTestSupport.h"
#include "cli/ColorArgument.h"
#include "cli/FormatCommands.h"
#include "formats/color/ColorConversions.h"
#include "platform/testing/TestEnvironment.h"

namespace kro::cli {
namespace {

class FormatCommandsTest : public ::testing::Test {
protected:
    CommandResult run(const std::string& name, std::vector<std::string> args) {
        return runOnce(registerFormatCommands, name, std::move(args));
    }

    // A user catalogue with two formats, "Mine" selected.
    void storeUserCatalogue(const char* version = "v5") {
        ColorFormats mine;
        for (const char* name : {"Mine", "Theirs"}) {
            auto item = std::make_shared<ColorFormatItem>();
            item->name = name;
            item->clipboardFormat = std::string(name) + " hex[red]";
            mine.formats.push_back(item);
        }
        mine.selectedFormatName = "Mine";
        environment.files.files[*ColorFormats::store().path(version)] = compactText(mine.toJson());
    }

    kro::testing::TestEnvironment environment;
};

TEST_F(FormatCommandsTest, ShippedCatalogueWhenTheUserHasNone) {
    auto result = run("format", {"FF0080", "#336699"});
    EXPECT_EQ(result.status, exitDone);
    EXPECT_EQ(result.out, "#FF0080\n#336699\n");
    EXPECT_EQ(result.err, "");

    result = run("format", {"--format", "CSS RGB", "ff0080"});
    EXPECT_EQ(result.out, "rgb(255, 0, 128)\n");
    result = run("format", {"rgb(51, 102, 153)", "--format", "SwiftUI"});
    EXPECT_EQ(result.out, "Color(red: 0.200, green: 0.400, blue: 0.600)\n");

    result = run("formats", {});
    EXPECT_EQ(result.status, exitDone);
    EXPECT_EQ(result.out.substr(0, 33), "* CSS Hex\n  CSS Hex with Alpha\n  ");
    EXPECT_TRUE(environment.files.files.empty()) << "reading writes nothing";
}

TEST_F(FormatCommandsTest, TheUsersCatalogueWins) {
    storeUserCatalogue("v4");
    EXPECT_EQ(run("format", {"FF0080"}).out, "Mine ff\n");
    EXPECT_EQ(run("format", {"--format", "Theirs", "00FF00"}).out, "Theirs 00\n");
    EXPECT_EQ(run("formats", {}).out, "* Mine\n  Theirs\n");
    // A damaged stored catalogue is passed over.
    environment.files.files.clear();
    environment.files.files[*ColorFormats::store().path("v5")] = "{";
    EXPECT_EQ(run("format", {"FF0080"}).out, "#FF0080\n");
}

TEST_F(FormatCommandsTest, TemplatesFromTheCommandLine) {
    auto result = run("format", {"--template", "{\"function\":\"upper\",\"x\":\"hex[red]hex[green]\"}", "80ff00", "000000"});
    EXPECT_EQ(result.out, "80FF\n0000\n");
    EXPECT_EQ(run("format", {"--template", "css[hue]", "--", "FF0080"}).out, "-30\n");
}

TEST_F(FormatCommandsTest, ErrorsChangeAndWriteNothing) {
    auto result = run("format", {"--format", "No Such Format", "FF0080"});
    EXPECT_EQ(result.status, exitFailed);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "kro: no format named \"No Such Format\"\n");

    result = run("format", {"FF0080", "not a color"});
    EXPECT_EQ(result.status, exitFailed);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "kro: cannot read color 'not a color'\n");

    for (const auto& args : std::vector<std::vector<std::string>>{
             {}, {"--format", "CSS Hex"}, {"--format"}, {"--format", "A", "--template", "B", "FF0080"}}) {
        result = run("format", args);
        EXPECT_EQ(result.status, exitUsage);
        EXPECT_EQ(result.err, "usage: kro format [--format NAME | --template TEXT] COLOR...\n");
    }
    EXPECT_EQ(run("formats", {"extra"}).status, exitUsage);
}

TEST(ColorArgumentTest, HexFirstThenRecognition) {
    EXPECT_EQ(hexText(*parseColorArgument("#ff0080")), "FF0080");
    EXPECT_EQ(hexText(*parseColorArgument("336699")), "336699");
    EXPECT_EQ(hexText(*parseColorArgument("rgb(51, 102, 153)")), "336699");
    EXPECT_EQ(hexText(*parseColorArgument("color: #336699;")), "336699");
    for (const char* bad : {"", "#", "12345", "12345G", "GG0000", "nothing here"}) EXPECT_FALSE(parseColorArgument(bad)) << bad;
}

}  // namespace
}  // namespace kro::cli
