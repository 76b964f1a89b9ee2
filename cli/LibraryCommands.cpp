#include "cli/LibraryCommands.h"

#include <ostream>

#include "cli/AgentRequest.h"
#include "cli/HeadlessSync.h"
#include "cloud/LibraryRequests.h"
#include "cloud/Snapshots.h"
#include "library/User.h"

namespace kro::cli {
namespace {

int printReply(CommandContext& context, const Json& reply) {
    if (!reply.is_object()) return fail(context, "the agent gave an answer that is not understood");
    // What was done is printed also when the request failed partway.
    for (const auto& line : reply.value("lines", Json::array())) {
        if (line.is_string()) context.out << line.get<std::string>() << "\n";
    }
    if (!reply.value("ok", false)) return fail(context, reply.value("error", std::string("the request failed")));
    return exitDone;
}

// No agent: the stores are read here and the request runs in this process. A sync's answers come from the
// network thread through the main queue, which this command runs until the reply.
int runHere(CommandContext& context, const Json& request) {
    User::shared()->load();
    Snapshots::shared().load();
    // Shared with the handler: a reply that comes after the limit must still find it.
    auto reply = std::make_shared<std::optional<Json>>();
    handleLibraryRequest(request, [reply](const Json& answer) { *reply = answer; });
    if (!*reply && !runMainQueueUntil([reply] { return reply->has_value(); }))
        return fail(context, "the sync server did not answer in time");
    return printReply(context, **reply);
}

int run(CommandContext& context, const Json& request) {
    const double limit = request.contains("sync") ? std::chrono::duration<double>(kSyncLimit).count() : 10.0;
    if (const auto answer = askAgent(compactText(request), limit)) return printReply(context, Json::parse(*answer, nullptr, false));
    return runHere(context, request);
}

}  // namespace

void registerLibraryCommands(CommandTable& table) {
    static const Command snapshotCommand{"kro snapshot list|create|restore UUID", [](CommandContext& context) {
        const auto& args = context.args;
        if (args.size() == 1 && (args[0] == "list" || args[0] == "create")) return run(context, Json{{"snapshot", args[0]}});
        if (args.size() == 2 && args[0] == "restore") return run(context, Json{{"snapshot", "restore"}, {"uuid", args[1]}});
        return usageError(context, snapshotCommand);
    }};
    static const Command syncCommand{"kro sync", [](CommandContext& context) {
        if (!context.args.empty()) return usageError(context, syncCommand);
        return run(context, Json{{"sync", true}});
    }};
    table.insert_or_assign("snapshot", snapshotCommand);
    table.insert_or_assign("sync", syncCommand);
}

}  // namespace kro::cli
