#pragma once
// What this computer is, for the snapshots it takes.
#include <optional>
#include <string>

#include "cloud/Snapshot.h"

namespace kro {

// From the chassis the system reports (hostnamectl's CHASSIS in /etc/machine-info, else the firmware's
// chassis type): portable ones are `laptop`, mini PCs `macMini`, towers and servers `macPro`, plain desktops
// `macStudio`, all-in-ones and anything unknown `iMac`.
SnapshotMachine hostMachine();

// The kind of machine in the words a person reads, as the system reports it: "Desktop", "Laptop",
// "Virtual machine", "Container"…; "Computer" when nothing says.
std::string hostChassis();

// The words for a stored machine kind, for snapshots that do not carry their chassis's own words.
std::string machineWords(SnapshotMachine machine);

// The host's pretty name (/etc/machine-info), else its host name; nothing when neither can be read.
std::optional<std::string> hostName();

}  // namespace kro
