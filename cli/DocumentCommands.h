#pragma once
#include <functional>
#include <optional>
#include <string>

#include "cli/Command.h"

namespace kro::cli {

// `kro import FILE...`: documents and palette files into the library, through the running agent when there
// is one, else into the stores directly. `kro export PALETTE-NAME OUT`: one palette into a file whose
// extension names the form ("palette", "ase", "clr", "json", "pdf", or any palette format that writes).
void registerDocumentCommands(CommandTable& table);

// How `kro import` reaches a running agent: the request line goes out, the reply line comes back, nothing
// when no agent answers. Replaceable so tests run without one.
using AgentSender = std::function<std::optional<std::string>(const std::string& request)>;
void setAgentSenderForTesting(AgentSender sender);

}  // namespace kro::cli
