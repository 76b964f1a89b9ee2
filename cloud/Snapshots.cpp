#include "cloud/Snapshots.h"

#include <algorithm>

#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

std::shared_ptr<Snapshots>& sharedInstance() {
    static std::shared_ptr<Snapshots> snapshots;
    return snapshots;
}

std::optional<long> periodSeconds(SnapshotRefresh refresh) {
    switch (refresh) {
        case SnapshotRefresh::never: return std::nullopt;
        case SnapshotRefresh::minute: return 60;
        case SnapshotRefresh::hour: return 3600;
        case SnapshotRefresh::day: return 86400;
    }
    return std::nullopt;
}

}  // namespace

Snapshots::Snapshots() : createdAt(dateText(env().clock->now())) {}

Snapshots& Snapshots::shared() {
    auto& snapshots = sharedInstance();
    if (!snapshots) snapshots = std::make_shared<Snapshots>();
    return *snapshots;
}

void Snapshots::resetShared() {
    sharedInstance() = std::make_shared<Snapshots>();
    store().forget();
}

Json Snapshots::toJson() const {
    Json array = Json::array();
    for (const auto& snapshot : snapshots) array.push_back(snapshot->toJson());
    Json json = Json::object();
    json["snapshots"] = std::move(array);
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::shared_ptr<Snapshots> Snapshots::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "Snapshots");
    auto decoded = std::make_shared<Snapshots>();
    if (const Json* list = member(o, "snapshots")) {
        if (!list->is_array()) throw JsonDecodeError("\"snapshots\" is not an array");
        for (const auto& snapshot : *list) decoded->snapshots.push_back(Snapshot::fromJson(snapshot));
    }
    if (auto v = text(o, "createdAt")) decoded->createdAt = *v;
    decoded->updatedAt = text(o, "updatedAt");
    return decoded;
}

const Store& Snapshots::store() {
    static const Store store({"snapshots.json", Notifications::snapshotsLoaded, Notifications::snapshotsSaved});
    return store;
}

void Snapshots::load(const StoreCompletion& completion) {
    store().load([](const Json& json) { return Snapshots::fromJson(json); },
                 [this](const std::shared_ptr<Snapshots>& loaded, bool migrating) {
                     snapshots = loaded->snapshots;
                     createdAt = loaded->createdAt;
                     updatedAt = loaded->updatedAt;
                     if (migrating) save();
                 },
                 completion);
}

bool Snapshots::save() const { return store().save(toJson()); }

bool Snapshots::add(const SnapshotRef& snapshot) {
    if (this->snapshot(snapshot->uuid)) return false;
    snapshots.push_back(snapshot);
    updatedAt = dateText(env().clock->now());
    env().notifications->post(Notifications::snapshotsUpdated);
    save();
    return true;
}

bool Snapshots::remove(const std::string& uuid) {
    const auto found = std::find_if(snapshots.begin(), snapshots.end(),
                                    [&uuid](const SnapshotRef& snapshot) { return snapshot->uuid == uuid; });
    if (found == snapshots.end()) return false;
    snapshots.erase(found);
    updatedAt = dateText(env().clock->now());
    env().notifications->post(Notifications::snapshotsUpdated);
    save();
    return true;
}

SnapshotRef Snapshots::snapshot(const std::string& uuid) const {
    for (const auto& snapshot : snapshots) {
        if (snapshot->uuid == uuid) return snapshot;
    }
    return nullptr;
}

void Snapshots::check(const std::function<void(bool added)>& completion, long interval) {
    const auto period = periodSeconds(Preferences::shared().snapshotsRefresh());
    if (!period) return completion(false);
    const long now = std::chrono::duration_cast<std::chrono::seconds>(env().clock->now().time_since_epoch()).count();
    const long remainder = now % *period;
    if (remainder > interval) return completion(false);
    completion(add(Snapshot::make(*User::shared())));
}

}  // namespace kro
