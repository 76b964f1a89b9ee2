// `kro name`: one nearest name per colour, and the command line's errors.
#include <gtest/gtest.h>

#include <sstream>

#include "CommandTestSupport.h"
#include "cli/NameCommand.h"

namespace kro::cli {
namespace {

CommandResult runName(std::vector<std::string> args) { return runOnce(registerNameCommands, "name", std::move(args)); }

TEST(NameCommandTest, NamesEachColourOnItsOwnLine) {
    auto run = runName({"FF0000", "#ffffff", "663399"});
    EXPECT_EQ(run.status, exitDone);
    EXPECT_EQ(run.out, "Red\nWhite\nRebecca Purple\n");
    EXPECT_EQ(run.err, "");
}

TEST(NameCommandTest, ABadColourFailsBeforeAnythingIsWritten) {
    // Text in which recognition finds a colour (" FF0000", "#FF00000") is read as that colour; these hold none.
    for (const char* bad : {"FF00", "GG0000", "", "0xFF00", "#fff", "no color here"}) {
        auto run = runName({"FF0000", bad});
        EXPECT_EQ(run.status, exitFailed) << bad;
        EXPECT_EQ(run.out, "") << bad;
        EXPECT_EQ(run.err, "kro: cannot read color '" + std::string(bad) + "'\n");
    }
}

TEST(NameCommandTest, NoColourIsAUsageError) {
    auto run = runName({});
    EXPECT_EQ(run.status, exitUsage);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "usage: kro name COLOR...\n");
}

}  // namespace
}  // namespace kro::cli
