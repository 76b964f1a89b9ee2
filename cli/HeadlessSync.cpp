#include "cli/HeadlessSync.h"

#include <memory>
#include <ostream>
#include <vector>

#include "cloud/CloudSync.h"
#include "platform/DeferredMainQueue.h"
#include "platform/Environment.h"

namespace kro::cli {
namespace {

constexpr const char* kKeptHere = "not sent to the sync server (the change is kept here, and kro sync sends it): ";

// Listens to the sync until the wait is over, keeping what did not go as it should.
std::shared_ptr<std::vector<CloudReport>> listen(int& observer) {
    auto problems = std::make_shared<std::vector<CloudReport>>();
    observer = CloudSync::shared().addObserver([problems](const CloudReport& report) {
        if (report.kind != CloudReport::Kind::done) problems->push_back(report);
    });
    return problems;
}

// Waits until no request is under way. The flag is shared: an answer that comes after the limit must find it.
bool waitUntilIdle() {
    auto idle = std::make_shared<bool>(false);
    CloudSync::shared().whenIdle([idle] { *idle = true; });
    return runMainQueueUntil([idle] { return *idle; });
}

}  // namespace

bool runMainQueueUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    auto* queue = dynamic_cast<DeferredMainQueue*>(env().mainQueue);
    return queue && queue->runUntil(done, limit);
}

void catchUpBeforeChange(std::ostream& err) {
    auto& sync = CloudSync::shared();
    auto session = sync.session();
    if (!session) return;
    // The account and its password are read once, for this comparison and the push after the change.
    sync.holdSession(std::move(session));
    int observer = 0;
    const auto problems = listen(observer);
    auto settled = std::make_shared<bool>(false);
    sync.fetchBeforeChange("Kro/HeadlessSync", "catchUpBeforeChange()", __LINE__, [settled] { *settled = true; });
    const bool answered = runMainQueueUntil([settled] { return *settled; });
    sync.removeObserver(observer);
    if (answered && problems->empty()) return;
    // The record could not be read, so a push could overwrite work this library has not seen: none is made.
    sync.holdSession(std::nullopt);
    sync.setSessionProvider(nullptr);
    err << "kro: " << kKeptHere
        << (answered ? problems->front().sentence : "the sync server did not answer in time") << "\n";
}

bool finishHeadlessSync(std::ostream& err) {
    // A change run here finishes the sync under the stores' lock, and the command's end asks again: a wait
    // that already ran out is not waited out twice.
    static bool gaveUp = false;
    if (gaveUp) return false;
    int observer = 0;
    const auto problems = listen(observer);
    const bool answered = waitUntilIdle();
    CloudSync::shared().removeObserver(observer);
    for (const auto& report : *problems) {
        err << "kro: " << (report.kind == CloudReport::Kind::failed ? kKeptHere : "") << report.sentence << "\n";
    }
    if (!answered) {
        gaveUp = true;
        err << "kro: " << kKeptHere << "the sync server did not answer in time\n";
        return false;
    }
    // Lets go of the account's database, whose thread then ends: nothing is under way any more.
    CloudSync::shared().reset();
    return true;
}

}  // namespace kro::cli
