// `kro contrast`, `kro simulate` and `kro scan`: their output and the command line's errors.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "CommandTestSupport.h"
#include "cli/ColorCommands.h"
#include "formats/color/ColorConversions.h"
#include "formats/color/WCAG.h"

namespace kro::cli {
namespace {

CommandResult run(const std::string& name, std::vector<std::string> args, const std::string& input = "") {
    return runOnce(registerColorCommands, name, std::move(args), input);
}

TEST(ColorCommandsTest, ContrastPrintsRatioAndLevel) {
    EXPECT_EQ(run("contrast", {"000000", "#FFFFFF"}).out, "21.00 AAA\n");
    EXPECT_EQ(run("contrast", {"777777", "ffffff"}).out, "4.48 AA Large\n");
    // Any colour text the scan recognises will do.
    EXPECT_EQ(run("contrast", {"rgb(119, 119, 119)", "white"}).out, "4.48 AA Large\n");
}

TEST(ColorCommandsTest, ContrastFixesEitherColour) {
    const auto fixedBackground = run("contrast", {"ffffff", "cccccc", "--fix", "background"});
    ASSERT_EQ(fixedBackground.status, exitDone) << fixedBackground.err;
    ASSERT_EQ(fixedBackground.out.size(), std::string("1.61 Fail\n000000\n").size()) << fixedBackground.out;
    EXPECT_TRUE(fixedBackground.out.starts_with("1.61 Fail\n"));
    const auto background = colorFromHex(fixedBackground.out.substr(10, 6));
    EXPECT_LT(background.brightness(), 0.8);
    EXPECT_GT(WCAG::ratio(background, colorFromHex("ffffff")), 2.99);

    const auto fixedForeground = run("contrast", {"--fix", "foreground", "cccccc", "ffffff"});
    EXPECT_EQ(fixedForeground.out, fixedBackground.out);

    // A pair with enough contrast keeps its colour.
    EXPECT_EQ(run("contrast", {"000000", "ffffff", "--fix", "foreground"}).out, "21.00 AAA\n000000\n");
}

TEST(ColorCommandsTest, SimulateOneLinePerColour) {
    const auto grey = run("simulate", {"achromatopsia", "ff0000", "#00ff00", "blue"});
    EXPECT_EQ(grey.status, exitDone);
    EXPECT_EQ(grey.out, "4C4C4C\n969696\n1D1D1D\n");
    EXPECT_EQ(run("simulate", {"Tritanopia", "ffffff"}).out, "FFFCFF\n");
    EXPECT_EQ(run("simulate", {"normal", "hsl(120, 100%, 50%)"}).out, "00FF00\n");
}

TEST(ColorCommandsTest, ScanListsColoursWithAlpha) {
    const std::string text = "a { color: rgba(1, 2, 3, 0.5); background: red; }";
    EXPECT_EQ(run("scan", {}, text).out, "FF0000 1\n010203 0.5\n");
    EXPECT_EQ(run("scan", {"-"}, text).out, "FF0000 1\n010203 0.5\n");
    EXPECT_EQ(run("scan", {"--patterns", "cssRGB,cssHEX"}, text).out, "010203 0.5\n");

    char path[] = "/tmp/kro-scan-XXXXXX";
    const int descriptor = mkstemp(path);
    ASSERT_GE(descriptor, 0);
    close(descriptor);
    std::ofstream(path) << "hsla(0, 0%, 100%, 0.25)\n";
    EXPECT_EQ(run("scan", {path}).out, "FFFFFF 0.25\n");
    std::remove(path);
    const auto missing = run("scan", {path});
    EXPECT_EQ(missing.status, exitFailed);
    EXPECT_EQ(missing.err, "kro: cannot read " + std::string(path) + ": the file cannot be opened\n");
}

TEST(ColorCommandsTest, WrongCommandLinesAndBadColours) {
    struct Case {
        std::string name;
        std::vector<std::string> args;
        int status;
    };
    const Case cases[] = {
        {"contrast", {"000000"}, exitUsage},
        {"contrast", {"000000", "ffffff", "--fix"}, exitUsage},
        {"contrast", {"000000", "ffffff", "--fix", "sideways"}, exitUsage},
        {"contrast", {"000000", "ffffff", "eeeeee"}, exitUsage},
        {"contrast", {"000000", "nothing"}, exitFailed},
        {"simulate", {"deuteranopia"}, exitUsage},
        {"simulate", {"colorful", "ff0000"}, exitUsage},
        {"simulate", {"protanopia", "ff0000", "#fff"}, exitFailed},
        {"scan", {"--patterns", "cssRGB,css"}, exitUsage},
        {"scan", {"--patterns", ""}, exitUsage},
        {"scan", {"--patterns"}, exitUsage},
        {"scan", {"a.txt", "b.txt"}, exitUsage},
    };
    for (const auto& c : cases) {
        const auto result = run(c.name, c.args);
        EXPECT_EQ(result.status, c.status) << c.name << " " << testing::PrintToString(c.args);
        EXPECT_EQ(result.out, "") << c.name;
        EXPECT_FALSE(result.err.empty());
    }
    EXPECT_EQ(run("simulate", {"protanopia", "ff0000", "#fff"}).err, "kro: cannot read color '#fff'\n");
}

}  // namespace
}  // namespace kro::cli
