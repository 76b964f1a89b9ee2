#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro name COLOR...`: the nearest colour name, one line per colour.
void registerNameCommands(CommandTable& table);

}  // namespace kro::cli
