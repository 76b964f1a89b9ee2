#pragma once
// Whole-library sync with the account's record. `updateCloudKit` pushes the library (the change pipeline's
// last step); `fetchCloudKit` reads the record and settles it against the library. Each goes on only when an
// account is signed in and its own one-second gate allows it; otherwise only its completion runs, on the main
// queue. Failures are log lines: the library is never held back, and only the next call tries again.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "cloud/CloudDatabase.h"
#include "cloud/CloudGate.h"

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

    static CloudSync& shared();

    void setSessionProvider(CloudSessionProvider provider) { provider_ = std::move(provider); }

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

    CloudSessionProvider provider_;
    CloudGate updateGate_{"canCallUpdateCloudKit()"};
    CloudGate fetchGate_{"canCallFetchCloudKit()"};
};

}  // namespace kro
