#pragma once
// `kro get` and `kro send`: the colours of a design application, through the running agent; and
// `kro krita-plugin`, which puts Kro's plug-in into Krita.
#include "cli/Command.h"

namespace kro::cli {

void registerBridgeCommands(CommandTable& table);

}  // namespace kro::cli
