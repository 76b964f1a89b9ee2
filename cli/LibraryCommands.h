#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro snapshot list|create|restore UUID`, `kro sync`, `kro undo` and `kro redo`: through the running agent
// when there is one, else on the stores directly. Each prints what was done, a line each.
void registerLibraryCommands(CommandTable& table);

}  // namespace kro::cli
