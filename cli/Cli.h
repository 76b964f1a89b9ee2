#pragma once
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "cli/Command.h"

namespace kro::cli {

// Every headless command, by name.
const CommandTable& commandTable();

// Runs `kro <args>` for a headless command. `args[0]` is the command's name.
int runCommand(const std::vector<std::string>& args, std::istream& in, std::ostream& out, std::ostream& err);

// Answers the command lines that only ask about the program, before any store is touched: "--help", "-h",
// "help [COMMAND]", "--version", and any command, "open" included, asked for its help. Nothing for any
// other command line.
std::optional<int> answerQuestion(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The usage text of the whole program.
std::string programUsage();

// "kro 0.1.0": the version the build was made from.
std::string programVersion();

}  // namespace kro::cli
