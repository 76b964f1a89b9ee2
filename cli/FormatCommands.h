#pragma once
// `kro format [--format NAME | --template TEXT] COLOR...`: the copied text of each colour, one line each,
// in the named format, the selected one, or a template given on the command line.
// `kro formats`: the format catalogue, one name a line, the selected one marked "* ".
// The user's own catalogue is used when it exists, the shipped one otherwise; neither is written.
#include <memory>

#include "cli/Command.h"
#include "formats/ColorFormats.h"

namespace kro::cli {

void registerFormatCommands(CommandTable& table);

// The stored catalogue of the load list that decodes first, else the shipped one; nothing when neither reads.
std::shared_ptr<ColorFormats> readCatalogue();

}  // namespace kro::cli
