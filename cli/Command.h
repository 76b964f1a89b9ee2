#pragma once
// The shape every `kro <command>` takes. Each command family lives in its own file in this folder and
// exposes its commands through a `register…Commands(CommandTable&)` function that cli/Cli.cpp calls.
#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kro::cli {

// Exit status of every command: 0 done, 1 the work failed (one line "kro: <what went wrong>" on standard
// error), 2 the command line is wrong (usage on standard error).
enum ExitCode : int { exitDone = 0, exitFailed = 1, exitUsage = 2 };

struct CommandContext {
    std::vector<std::string> args;  // the arguments after the command's name
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

struct Command {
    std::string usage;  // one line, e.g. "kro name COLOR..."
    std::function<int(CommandContext&)> run;
};

using CommandTable = std::map<std::string, Command>;

// Writes "kro: <message>" and returns exitFailed.
int fail(CommandContext& context, const std::string& message);
// Writes "usage: <usage>" and returns exitUsage.
int usageError(CommandContext& context, const Command& command);

// True when the arguments ask for help ("--help" or "-h" before any "--"): the command then prints its usage
// and acts on nothing, so a script can ask any command how it is called.
bool asksForHelp(const std::vector<std::string>& args);

}  // namespace kro::cli
