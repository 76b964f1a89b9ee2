#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro convert IN OUT [--from FORMAT] [--to FORMAT]`, `kro inspect FILE` and `kro palette-formats`.
void registerExchangeCommands(CommandTable& table);

}  // namespace kro::cli
