#pragma once
// Whole-library sync with the account's record. `updateCloudKit` pushes the library (the change pipeline's
// last step); `fetchCloudKit` reads the record and settles it against the library. Each goes on only when an
// account is signed in and its own one-second gate allows it; otherwise only its completion runs, on the main
// queue. Failures are log lines, and reports to whoever listens (a command that tells a person): the library is
// never held back, and only the next call tries again.
#include <functional>
#include <map>
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

// What a sync did, or could not do, in a person's words: it names the sync server, where the log lines keep
// their own text.
struct CloudReport {
    enum class Kind {
        done,     // a step that went as it should
        notSent,  // a call the one-second gate held back: the next sync makes it
        failed,   // the server could not be reached, refused, timed out or answered something unreadable
    };
    Kind kind = Kind::done;
    std::string sentence;
};

class CloudSync {
public:
    using Completion = std::function<void()>;
    // Hears what each call did: how a command tells a person what happened.
    using Observer = std::function<void(const CloudReport&)>;

    static CloudSync& shared();

    void setSessionProvider(CloudSessionProvider provider) { provider_ = std::move(provider); }
    // Returns a number that `removeObserver` takes.
    int addObserver(Observer observer);
    void removeObserver(int observer) { observers_.erase(observer); }
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
    // The first comparison of a command about to change the library: as `fetchCloudKit`, except that a
    // library newer than the record is left for the change's own push, which follows at once (the gate
    // would hold back a second push within the second).
    void fetchBeforeChange(const std::string& file, const std::string& function, int line, Completion completion);

    // Signed out, with both gates open again (tests).
    void reset();

private:
    struct CallSite {
        std::string file;
        std::string function;
        int line = 0;
    };

    CloudSync() = default;
    void fetch(const CallSite& site, Completion completion, bool pushWhenNewer);
    void saveRecord(const CloudSession& session, const CloudRecord& record, bool created, const CallSite& site,
                    Completion completion);
    void settle(const CloudRecord& record, const CallSite& site, bool pushWhenNewer);

    void log(const std::string& message, SherlogLevel level, const CallSite& site) const;
    void report(CloudReport::Kind kind, const std::string& sentence) const;
    void requestSent() { ++inFlight_; }
    void answerCame();
    void wakeIdleWaiters();

    CloudSessionProvider provider_;
    std::optional<CloudSession> held_;
    std::map<int, Observer> observers_;
    int nextObserver_ = 0;
    int inFlight_ = 0;  // touched on the main queue only
    std::vector<Completion> idleWaiters_;
    CloudGate updateGate_{"canCallUpdateCloudKit()"};
    CloudGate fetchGate_{"canCallFetchCloudKit()"};
};

}  // namespace kro
