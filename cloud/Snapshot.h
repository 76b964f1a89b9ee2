#pragma once
// A whole copy of the library, taken on a schedule or on demand.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/Palette.h"
#include "platform/Json.h"

namespace kro {

class User;

// The kind of machine that took a snapshot. Stored as its text.
enum class SnapshotMachine { laptop, macMini, iMac, macPro, macStudio };
std::string text(SnapshotMachine machine);
std::optional<SnapshotMachine> snapshotMachineFromText(const std::string& value);

class Snapshot {
public:
    // A new uuid, `iMac`, created now, with nothing in it.
    Snapshot();

    // A copy of the library's history, target and palettes, with this host's machine kind and name.
    // A palette without a name is given one by the naming rule.
    static std::shared_ptr<Snapshot> make(const User& user);

    Json toJson() const;
    // Forgiving like every record; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<Snapshot> fromJson(const Json& json);

    // Puts the snapshot's history, target and palettes back into the library, through the change pipeline
    // (so it can be undone). Copies are put back: the snapshot itself stays as it was.
    void restore(User& user) const;

    std::string uuid;
    SnapshotMachine machine = SnapshotMachine::iMac;
    std::optional<std::string> device;
    std::optional<std::string> chassis;  // the words shown for the machine: "Laptop", "Virtual machine"…
    PaletteRef history;  // may be absent
    std::optional<std::string> paletteUUID;
    std::vector<PaletteRef> palettes;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

using SnapshotRef = std::shared_ptr<Snapshot>;

}  // namespace kro
