#pragma once
#include "cli/Command.h"

namespace kro::cli {

// `kro import FILE...`: documents and palette files into the library, through the running agent when there
// is one, else into the stores directly. `kro export PALETTE-NAME OUT`: one palette into a file whose
// extension names the form ("palette", "ase", "clr", "json", "pdf", or any palette format that writes).
void registerDocumentCommands(CommandTable& table);

}  // namespace kro::cli
