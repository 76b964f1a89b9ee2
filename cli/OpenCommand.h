#pragma once
#include <iosfwd>
#include <string>
#include <vector>

#include "platform/Paths.h"

namespace kro::cli {

inline constexpr const char* kOpenUsage = "kro open [ARG...]";

// `kro open ARG...`: hands kro:// commands and files to the running agent, starting one when none runs.
// Relative file paths are made absolute first, since the agent has its own working folder. With no argument
// it only makes sure the agent runs: that is what the desktop entry does when started from a menu.
int runOpen(const std::vector<std::string>& args, const Paths& paths, const std::string& selfPath, std::ostream& err);

// The request line the agent reads: {"open": [...]}.
std::string openRequest(const std::vector<std::string>& args, const std::string& workingFolder);

}  // namespace kro::cli
