#pragma once
#include <iosfwd>
#include <string>
#include <vector>

#include "cli/Command.h"

namespace kro::cli {

// Every headless command, by name.
const CommandTable& commandTable();

// Runs `kro <args>` for a headless command. `args[0]` is the command's name.
int runCommand(const std::vector<std::string>& args, std::istream& in, std::ostream& out, std::ostream& err);

// The usage text of the whole program.
std::string programUsage();

}  // namespace kro::cli
