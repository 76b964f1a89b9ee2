#pragma once
// Whole-library sync with the account's record. `updateCloudKit` pushes the library (the change pipeline's
// last step); `fetchCloudKit` reads the record and settles it against the library. Each goes on only when an
// account is signed in and its own one-second gate allows it; otherwise only its completion runs, on the main
// queue. Failures are log lines: the library is never held back, and only the next call tries again.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cloud/CloudDatabase.h"
#include "cloud/CloudGate.h"
#include "library/Sherlog.h"

namespace kro {

struct CloudSession {
    // The signed-in account's identifier: the record's name.
    std::string recordName;
    std::shared_ptr<CloudDatabase> database;
};

// The session of the moment; nothing when signed out.
using CloudSessionProvider = std::function<std::optional<CloudSession>()>;

class CloudSync {
public:
    using Completion = std::function<void()>;
    // Hears each line a sync logs, and a sentence on what settling did: how `kro sync` tells what happened.
    using Observer = std::function<void(const std::string& line)>;

    static CloudSync& shared();

    void setSessionProvider(CloudSessionProvider provider) { provider_ = std::move(provider); }
    void setObserver(Observer observer) { observer_ = std::move(observer); }
    // The session every call uses: the held one, else the provider's of the moment; nothing when signed out.
    std::optional<CloudSession> session() const;
    // Makes every call use `session` until it is released with nothing, so that a request reads the account
    // and its password once for its check, its fetch and the push the fetch may set off.
    void holdSession(std::optional<CloudSession> session) { held_ = std::move(session); }
    // Runs `completion` on the main queue once no request is waiting for its answer (a push that a fetch
    // set off included).
    void whenIdle(Completion completion);

    bool canCallUpdateCloudKit() { return updateGate_.allow(); }
    bool canCallFetchCloudKit() { return fetchGate_.allow(); }

    void updateCloudKit(const std::string& file, const std::string& function, int line, Completion completion = {});
    void fetchCloudKit(const std::string& file, const std::string& function, int line, Completion completion = {});

    // Signed out, with both gates open again (tests).
    void reset();

private:
    CloudSync() = default;
    void saveRecord(const CloudSession& session, const CloudRecord& record, bool created, const std::string& file,
                    const std::string& function, int line, Completion completion);

    void note(const std::string& message, SherlogLevel level, const std::string& file, const std::string& function,
              int line) const;
    void settle(const CloudRecord& record, const std::string& file, const std::string& function, int line);
    void requestSent() { ++inFlight_; }
    void answerCame();
    void wakeIdleWaiters();

    CloudSessionProvider provider_;
    std::optional<CloudSession> held_;
    Observer observer_;
    int inFlight_ = 0;  // touched on the main queue only
    std::vector<Completion> idleWaiters_;
    CloudGate updateGate_{"canCallUpdateCloudKit()"};
    CloudGate fetchGate_{"canCallFetchCloudKit()"};
};

}  // namespace kro
