#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro pick [--format NAME | --template TEXT] [--count N]`: opens the loupe through the agent (starting one
// when none runs) and prints each picked colour's text, one line per colour. Escape, or a session that
// ends without a pick, exits 1 with nothing printed.
void registerPickCommand(CommandTable& table);

}  // namespace kro::cli
