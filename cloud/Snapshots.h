#pragma once
// The list of snapshots, kept in "snapshots.json" by the stores' procedure. There is no cap: the list grows
// until the user deletes entries.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cloud/Snapshot.h"
#include "library/Store.h"

namespace kro {

class Snapshots {
public:
    // Empty, created now.
    Snapshots();

    static Snapshots& shared();
    // Back to an empty list in memory (tests; a full reset).
    static void resetShared();

    Json toJson() const;
    static std::shared_ptr<Snapshots> fromJson(const Json& json);

    static const Store& store();
    // A failed load leaves the list as it is (empty at launch).
    void load(const StoreCompletion& completion = {});
    bool save() const;

    // Appends, unless a snapshot with the same uuid is in the list; then stamps, posts "SnapshotsUpdated"
    // and saves. Returns whether it was added.
    bool add(const SnapshotRef& snapshot);
    // Takes the snapshot with this uuid out of the list. Returns whether one was there.
    bool remove(const std::string& uuid);
    SnapshotRef snapshot(const std::string& uuid) const;

    // The poll tick's check: a snapshot of the library is due once per period of the refresh preference,
    // in the first `interval` seconds after the period's boundary in UTC (a machine asleep through them
    // waits for the next period). The completion says whether one was added.
    void check(const std::function<void(bool added)>& completion, long interval = 60);

    std::vector<SnapshotRef> snapshots;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

}  // namespace kro
