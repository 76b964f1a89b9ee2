#pragma once
// Starting the agent for a command that needs one (`kro open`, `kro pick`) when none runs.
#include <string>

#include "platform/Paths.h"

namespace kro::cli {

// This program's own path, to start the agent from.
std::string selfPath();

// Starts `kro` with no command as a detached agent; its output goes to a log in the cache folder.
bool startAgent(const std::string& selfPath, const Paths& paths);

}  // namespace kro::cli
