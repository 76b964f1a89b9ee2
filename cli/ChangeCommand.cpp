#include "cli/ChangeCommand.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/AgentRequest.h"
#include "cli/HeadlessSync.h"
#include "cloud/CloudSync.h"
#include "documents/ChangeRequests.h"
#include "library/StoreLock.h"

namespace kro::cli {
namespace {

// The texts of an array member, skipping what is not text.
std::vector<std::string> texts(const Json& reply, const char* key) {
    std::vector<std::string> found;
    if (!reply.contains(key) || !reply[key].is_array()) return found;
    for (const auto& item : reply[key]) {
        if (item.is_string()) found.push_back(item.get<std::string>());
    }
    return found;
}

int printReply(CommandContext& context, const Json& reply) {
    if (!reply.is_object() || !reply.contains("ok") || !reply["ok"].is_boolean())
        return fail(context, "the agent gave an answer that is not understood");
    // What was done is printed also when the request failed partway (a sync that merged, then could not push).
    // A failed save leaves no lines in the reply, so it never prints a success.
    for (const auto& line : texts(reply, "lines")) context.out << line << "\n";
    for (const auto& line : texts(reply, "warnings")) context.err << "kro: " << line << "\n";
    if (!reply["ok"].get<bool>()) {
        const bool said = reply.contains("error") && reply["error"].is_string();
        return fail(context, said ? reply["error"].get<std::string>() : std::string("the request failed"));
    }
    return exitDone;
}

// No agent: the request runs in this process. A sync's answers come from the network thread through the main
// queue, which this command runs until the reply.
int runHere(CommandContext& context, const ChangeCommand& command) {
    std::string reason;
    const auto lock = StoreLock::take(kStoreLockWait, &reason);
    const auto lockPath = StoreLock::path().value_or("its lock");
    if (!lock && !reason.empty()) return fail(context, "cannot lock the library (" + lockPath + ": " + reason + ")");
    if (!lock) return fail(context, "another kro is changing the library (it holds " + lockPath + "); try again when it is done");
    if (command.loadStores) command.loadStores();
    // Shared with the handler: a reply that comes after the limit must still find it.
    auto reply = std::make_shared<std::optional<Json>>();
    handleChangeRequest(command.request, [reply](const Json& answer) { *reply = answer; });
    if (!*reply && !runMainQueueUntil([reply] { return reply->has_value(); }, command.limit))
        return fail(context, "the sync server did not answer in time; nothing was changed here");
    const int status = printReply(context, **reply);
    // The answer to a push this change set off may bring another machine's work to merge and save, and that
    // save needs the lock: the sync is finished while it is still held.
    if (CloudSync::shared().session()) finishHeadlessSync(context.err);
    return status;
}

}  // namespace

int runChange(CommandContext& context, const ChangeCommand& command) {
    const auto answer = askAgent(compactText(command.request), static_cast<double>(command.limit.count()));
    switch (answer.status) {
        case AgentReply::Status::answered: return printReply(context, Json::parse(answer.line, nullptr, false));
        case AgentReply::Status::silent:
            // It holds the stores: writing them here would be overwritten by it, or overwrite its work.
            return fail(context, "the running agent did not answer within " + std::to_string(command.limit.count()) +
                                     " seconds (is it stopped?); nothing was changed");
        case AgentReply::Status::noAgent: break;
    }
    return runHere(context, command);
}

}  // namespace kro::cli
