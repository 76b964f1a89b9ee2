#include "cloud/Snapshot.h"

#include "cloud/HostMachine.h"
#include "library/JsonDecode.h"
#include "library/User.h"
#include "platform/Environment.h"
#include "platform/CaseText.h"

namespace kro {
namespace {

constexpr SnapshotMachine kMachines[] = {SnapshotMachine::laptop, SnapshotMachine::macMini, SnapshotMachine::iMac,
                                         SnapshotMachine::macPro, SnapshotMachine::macStudio};

// A copy that keeps the palette's identity and its colours'.
PaletteRef sameCopy(const PaletteRef& palette) { return Palette::fromJson(palette->toJson()); }

std::vector<PaletteRef> sameCopies(const std::vector<PaletteRef>& palettes) {
    std::vector<PaletteRef> copies;
    copies.reserve(palettes.size());
    for (const auto& palette : palettes) copies.push_back(sameCopy(palette));
    return copies;
}

}  // namespace

std::string text(SnapshotMachine machine) {
    switch (machine) {
        case SnapshotMachine::laptop: return "laptop";
        case SnapshotMachine::macMini: return "macMini";
        case SnapshotMachine::iMac: return "iMac";
        case SnapshotMachine::macPro: return "macPro";
        case SnapshotMachine::macStudio: return "macStudio";
    }
    return "iMac";
}

std::optional<SnapshotMachine> snapshotMachineFromText(const std::string& value) {
    return caseFromText<SnapshotMachine>(value, kMachines);
}

Snapshot::Snapshot() : uuid(newUUID()), createdAt(dateText(env().clock->now())) {}

std::shared_ptr<Snapshot> Snapshot::make(const User& user) {
    auto snapshot = std::make_shared<Snapshot>();
    snapshot->machine = hostMachine();
    snapshot->device = hostName();
    snapshot->chassis = hostChassis();
    snapshot->history = sameCopy(user.history);
    snapshot->paletteUUID = user.paletteUUID;
    snapshot->palettes = sameCopies(user.palettes);
    for (size_t i = 0; i < user.palettes.size(); ++i) {
        if (user.palettes[i]->name) continue;
        snapshot->palettes[i]->name = user.uniquePaletteName("Palette");
        snapshot->palettes[i]->isHistory = false;
    }
    return snapshot;
}

Json Snapshot::toJson() const {
    Json json = Json::object();
    json["uuid"] = uuid;
    json["machine"] = text(machine);
    if (device) json["device"] = *device;
    if (chassis) json["chassis"] = *chassis;
    if (history) json["history"] = history->toJson();
    if (paletteUUID) json["paletteUUID"] = *paletteUUID;
    Json array = Json::array();
    for (const auto& palette : palettes) array.push_back(palette->toJson());
    json["palettes"] = std::move(array);
    json["createdAt"] = createdAt;
    if (updatedAt) json["updatedAt"] = *updatedAt;
    return json;
}

std::shared_ptr<Snapshot> Snapshot::fromJson(const Json& json) {
    using namespace json_decode;
    const auto& o = object(json, "Snapshot");
    auto snapshot = std::make_shared<Snapshot>();
    if (auto v = text(o, "uuid")) snapshot->uuid = *v;
    if (auto v = text(o, "machine")) {
        auto machine = snapshotMachineFromText(*v);
        if (!machine) throw JsonDecodeError("unknown machine \"" + *v + "\"");
        snapshot->machine = *machine;
    }
    snapshot->device = text(o, "device");
    snapshot->chassis = text(o, "chassis");
    if (const Json* history = member(o, "history")) snapshot->history = Palette::fromJson(*history);
    snapshot->paletteUUID = text(o, "paletteUUID");
    if (const Json* palettes = member(o, "palettes")) {
        if (!palettes->is_array()) throw JsonDecodeError("\"palettes\" is not an array");
        for (const auto& palette : *palettes) snapshot->palettes.push_back(Palette::fromJson(palette));
    }
    if (auto v = text(o, "createdAt")) snapshot->createdAt = *v;
    snapshot->updatedAt = text(o, "updatedAt");
    return snapshot;
}

void Snapshot::restore(User& user) const {
    if (history && !(*user.history == *history)) user.history = sameCopy(history);
    if (user.paletteUUID != paletteUUID) user.paletteUUID = paletteUUID;
    if (!samePalettes(user.palettes, palettes)) user.palettes = sameCopies(palettes);
    user.trigger(true, true, true, true, "Kro/Snapshot", "restore(user:)", __LINE__);
}

}  // namespace kro
