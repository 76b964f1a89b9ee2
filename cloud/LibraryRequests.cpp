#include "cloud/LibraryRequests.h"

#include "cloud/CloudAccount.h"
#include "cloud/CloudSync.h"
#include "cloud/HostMachine.h"
#include "cloud/Snapshots.h"
#include "library/User.h"
#include "library/UserUndo.h"

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
        if (const auto& damage = Snapshots::store().damage()) {
            return refused(Snapshots::store().path(Directory::currentVersion).value_or("snapshots.json") +
                           " could not be read (" + *damage + "); it stays as it is until the next snapshot puts it aside");
        }
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
        const auto& given = request.contains("uuid") ? request["uuid"] : Json();
        const std::string uuid = given.is_string() ? given.get<std::string>() : given.dump();
        const auto snapshot = snapshots.snapshot(uuid);
        if (!snapshot) return refused("no snapshot has the identifier " + uuid);
        // Undo reaches the library as it was only where its state was recorded, in the running agent; a
        // command that runs alone keeps it as a snapshot instead, so that nothing is lost either way.
        if (UserUndo::shared().holdsAState()) {
            snapshot->restore(*User::shared());
            return done({"Restored snapshot " + uuid + " (kro undo puts the library back)"});
        }
        const auto kept = Snapshot::make(*User::shared());
        snapshots.add(kept);
        snapshot->restore(*User::shared());
        return done({"Restored snapshot " + uuid + "; the library as it was is kept as snapshot " + kept->uuid});
    }
    return refused("unknown snapshot action \"" + action + "\"");
}

// What a sync did, in order, and the first thing that went wrong.
struct SyncOutcome {
    std::vector<std::string> lines;
    std::optional<std::string> failure;
};

void syncRequest(const std::function<void(const Json& reply)>& reply) {
    auto& sync = CloudSync::shared();
    // Reading the session reads the account file and asks the secret store: once for the whole request.
    auto session = sync.session();
    if (!session) {
        std::string problem;
        loadCloudAccount(&problem);
        return reply(refused(problem.empty() ? "signed out: set an account with kro account set URL USER" : problem));
    }
    sync.holdSession(std::move(session));
    auto outcome = std::make_shared<SyncOutcome>();
    const int observer = sync.addObserver([outcome](const CloudReport& report) {
        if (report.kind != CloudReport::Kind::failed) {
            outcome->lines.push_back(report.sentence);
        } else if (!outcome->failure) {
            outcome->failure = report.sentence;
        }
    });
    sync.fetchCloudKit("Kro/LibraryRequests", "sync()", __LINE__, [outcome, observer, reply] {
        CloudSync::shared().whenIdle([outcome, observer, reply] {
            CloudSync::shared().holdSession(std::nullopt);
            CloudSync::shared().removeObserver(observer);
            Json answer = done(outcome->lines);
            if (outcome->failure) {
                answer["ok"] = false;
                answer["error"] = *outcome->failure;
            }
            reply(answer);
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
