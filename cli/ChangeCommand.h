#pragma once
// A command that changes the stores. It is handed to the running agent when one answers; else it runs here,
// holding the stores' lock for the whole load, change and save, so that two writers never overwrite each
// other. Either way the reply is printed alike: its lines on standard output, its warnings and its error on
// standard error as "kro: …", and exit 1 when it failed.
#include <chrono>
#include <functional>

#include "cli/Command.h"
#include "platform/Json.h"

namespace kro::cli {

struct ChangeCommand {
    Json request;  // a request of documents/ChangeRequests.h
    // Reads what the request needs when it runs here, once the lock is held.
    std::function<void()> loadStores;
    // How long the agent, or the network when it runs here, may take to answer.
    std::chrono::seconds limit = std::chrono::seconds(10);
};

int runChange(CommandContext& context, const ChangeCommand& command);

// How long a command waits for another process to let go of the stores.
inline constexpr std::chrono::seconds kStoreLockWait{5};

}  // namespace kro::cli
