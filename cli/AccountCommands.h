#pragma once
#include <functional>
#include <memory>

#include "cli/Command.h"
#include "platform/SecretStore.h"

namespace kro::cli {

// `kro account` shows the sync account; `kro account set URL USER` signs in (the password is asked for on
// the terminal without echo, or read from the first line of standard input when that is not a terminal);
// `kro account remove` signs out and forgets the password.
void registerAccountCommands(CommandTable& table);

// The same, with the secret store given (tests).
void registerAccountCommands(CommandTable& table, std::function<std::unique_ptr<SecretStore>()> secrets);

}  // namespace kro::cli
