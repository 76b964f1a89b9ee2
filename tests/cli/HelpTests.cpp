// Asking any command for help prints its usage and does nothing else; the program's own questions.
#include <gtest/gtest.h>

#include <sstream>

#include "CommandTestSupport.h"
#include "cli/Cli.h"
#include "cli/OpenCommand.h"

namespace kro::cli {
namespace {

CommandResult ask(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const auto answered = answerQuestion(args, out, err);
    return {answered.value_or(-1), out.str(), err.str()};
}

TEST(HelpTest, EveryCommandAnswersHelpWithItsUsageAndActsOnNothing) {
    auto names = std::vector<std::string>{"open"};
    for (const auto& [name, command] : commandTable()) names.push_back(name);
    for (const auto& name : names) {
        const auto usage = name == "open" ? std::string(kOpenUsage) : commandTable().at(name).usage;
        for (const auto& args : {std::vector<std::string>{name, "--help"}, {name, "-h"}, {name, "FF0000", "--help"},
                                 {"help", name}}) {
            const auto run = ask(args);
            EXPECT_EQ(run.status, exitDone) << args[0] << " " << args[1];
            EXPECT_EQ(run.out, "usage: " + usage + "\n") << name;
            EXPECT_EQ(run.err, "") << name;
        }
    }
}

TEST(HelpTest, HelpAfterTheEndOfOptionsIsAnArgument) {
    EXPECT_FALSE(asksForHelp({"--", "-h"}));
    EXPECT_FALSE(asksForHelp({"--helper", "-hx"}));
    EXPECT_TRUE(asksForHelp({"a", "-h", "--"}));
    EXPECT_EQ(ask({"name", "--", "--help"}).status, -1) << "left to the command";
}

TEST(HelpTest, TheProgramsOwnQuestions) {
    EXPECT_EQ(ask({"--version"}).out, programVersion() + "\n");
    EXPECT_TRUE(programVersion().starts_with("kro ")) << programVersion();
    for (const auto& args : {std::vector<std::string>{"--help"}, {"-h"}, {"help"}}) {
        const auto run = ask(args);
        EXPECT_EQ(run.status, exitDone);
        EXPECT_EQ(run.out, programUsage());
    }
    const auto unknown = ask({"help", "paint"});
    EXPECT_EQ(unknown.status, exitUsage);
    EXPECT_EQ(unknown.err, programUsage());
    // Anything else is left to the command itself.
    EXPECT_EQ(ask({"name", "FF0000"}).status, -1);
    EXPECT_EQ(ask({"--version", "x"}).status, -1);
}

}  // namespace
}  // namespace kro::cli
