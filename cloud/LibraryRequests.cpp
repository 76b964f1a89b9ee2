#include "cloud/LibraryRequests.h"

#include "cloud/CloudSync.h"
#include "cloud/HostMachine.h"
#include "cloud/Snapshots.h"
#include "library/User.h"

namespace kro {
namespace {

Json done(std::vector<std::string> lines) { return Json{{"ok", true}, {"lines", std::move(lines)}}; }
Json refused(const std::string& error) { return Json{{"ok", false}, {"error", error}}; }

std::string listLine(const Snapshot& snapshot) {
    const std::size_t colors = snapshot.history ? snapshot.history->colors.size() : 0;
    return snapshot.uuid + "  " + snapshot.createdAt + "  " + snapshot.chassis.value_or(machineWords(snapshot.machine)) + " " +
           snapshot.device.value_or("unknown device") + "  " + std::to_string(snapshot.palettes.size()) +
           " palettes, " + std::to_string(colors) + " history colors";
}

Json snapshotRequest(const Json& request) {
    const std::string action = request.value("snapshot", "");
    auto& snapshots = Snapshots::shared();
    if (action == "list") {
        std::vector<std::string> lines;
        for (const auto& snapshot : snapshots.snapshots) lines.push_back(listLine(*snapshot));
        if (lines.empty()) lines.push_back("No snapshots yet");
        return done(std::move(lines));
    }
    if (action == "create") {
        const auto snapshot = Snapshot::make(*User::shared());
        if (!snapshots.add(snapshot)) return refused("the snapshot could not be added");
        return done({"Created snapshot " + snapshot->uuid});
    }
    if (action == "restore") {
        const std::string uuid = request.value("uuid", "");
        const auto snapshot = snapshots.snapshot(uuid);
        if (!snapshot) return refused("no snapshot has the identifier " + uuid);
        snapshot->restore(*User::shared());
        return done({"Restored snapshot " + uuid + " (undo puts the library back)"});
    }
    return refused("unknown snapshot action \"" + action + "\"");
}

void syncRequest(const std::function<void(const Json& reply)>& reply) {
    auto& sync = CloudSync::shared();
    // Reading the session reads the account file and asks the secret store: once for the whole request.
    auto session = sync.session();
    if (!session) return reply(refused("signed out: set an account with kro account set URL USER"));
    sync.holdSession(std::move(session));
    auto lines = std::make_shared<std::vector<std::string>>();
    sync.setObserver([lines](const std::string& line) { lines->push_back(line); });
    sync.fetchCloudKit("Kro/LibraryRequests", "sync()", __LINE__, [lines, reply] {
        CloudSync::shared().whenIdle([lines, reply] {
            CloudSync::shared().holdSession(std::nullopt);
            CloudSync::shared().setObserver(nullptr);
            if (lines->empty()) lines->push_back("No request was made: the last sync was less than a second ago");
            reply(done(*lines));
        });
    });
}

}  // namespace

bool isLibraryRequest(const Json& request) {
    return request.is_object() && ((request.contains("snapshot") && request["snapshot"].is_string()) ||
                                   (request.contains("sync") && request["sync"] == true));
}

void handleLibraryRequest(const Json& request, const std::function<void(const Json& reply)>& reply) {
    if (!isLibraryRequest(request)) return reply(refused("the request is not understood"));
    if (request.contains("sync")) return syncRequest(reply);
    reply(snapshotRequest(request));
}

}  // namespace kro
