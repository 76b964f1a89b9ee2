// `kro name`: one nearest name per colour, and the command line's errors.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/NameCommand.h"
#include "formats/color/ColorConversions.h"

namespace kro::cli {
namespace {

struct Outcome {
    int status;
    std::string out, err;
};

Outcome runName(std::vector<std::string> args) {
    CommandTable table;
    registerNameCommands(table);
    std::istringstream in;
    std::ostringstream out, err;
    CommandContext context{std::move(args), in, out, err};
    int status = table.at("name").run(context);
    return {status, out.str(), err.str()};
}

TEST(NameCommandTest, NamesEachColourOnItsOwnLine) {
    auto run = runName({"FF0000", "#ffffff", "663399"});
    EXPECT_EQ(run.status, exitDone);
    EXPECT_EQ(run.out, "Red\nWhite\nRebecca Purple\n");
    EXPECT_EQ(run.err, "");
}

TEST(NameCommandTest, ABadColourFailsBeforeAnythingIsWritten) {
    for (const char* bad : {"FF00", "#FF00000", "GG0000", "##FF0000", " FF0000", "", "0xFF00"}) {
        auto run = runName({"FF0000", bad});
        EXPECT_EQ(run.status, exitFailed) << bad;
        EXPECT_EQ(run.out, "") << bad;
        EXPECT_EQ(run.err, "kro: not a colour: " + std::string(bad) + "\n");
    }
}

TEST(NameCommandTest, NoColourIsAUsageError) {
    auto run = runName({});
    EXPECT_EQ(run.status, exitUsage);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "usage: kro name COLOR...\n");
}

TEST(NameCommandTest, HexArgumentsAreSixDigitsWithAnOptionalHash) {
    EXPECT_EQ(hexText(*parseHexArgument("#a0b1C2")), "A0B1C2");
    EXPECT_EQ(hexText(*parseHexArgument("000000")), "000000");
    EXPECT_FALSE(parseHexArgument("#"));
    EXPECT_FALSE(parseHexArgument("12345G"));
}

}  // namespace
}  // namespace kro::cli
