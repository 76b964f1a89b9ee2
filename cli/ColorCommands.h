#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro contrast FG BG [--fix foreground|background]`: the contrast ratio and its level; with --fix, the
// hex of the fixed colour on a second line.
// `kro simulate KIND COLOR...`: each colour as a person with the colour vision deficiency KIND sees it.
// `kro scan [--patterns LIST] [FILE|-]`: the colours found in a text, with their alpha.
void registerColorCommands(CommandTable& table);

}  // namespace kro::cli
