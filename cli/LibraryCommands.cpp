#include "cli/LibraryCommands.h"

#include "cli/ChangeCommand.h"
#include "cli/HeadlessSync.h"
#include "cloud/Snapshots.h"
#include "library/User.h"

namespace kro::cli {
namespace {

int run(CommandContext& context, const Json& request) {
    const bool sync = request.contains("sync");
    return runChange(context, {request,
                               [] {
                                   User::shared()->load();
                                   Snapshots::shared().load();
                               },
                               sync ? kSyncLimit : std::chrono::seconds(10)});
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
    static const Command undoCommand{"kro undo", [](CommandContext& context) {
        if (!context.args.empty()) return usageError(context, undoCommand);
        return run(context, Json{{"undo", true}});
    }};
    static const Command redoCommand{"kro redo", [](CommandContext& context) {
        if (!context.args.empty()) return usageError(context, redoCommand);
        return run(context, Json{{"redo", true}});
    }};
    table.insert_or_assign("snapshot", snapshotCommand);
    table.insert_or_assign("sync", syncCommand);
    table.insert_or_assign("undo", undoCommand);
    table.insert_or_assign("redo", redoCommand);
}

}  // namespace kro::cli
