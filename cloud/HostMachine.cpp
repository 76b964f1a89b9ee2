#include "cloud/HostMachine.h"

#include <sstream>

#include "platform/Environment.h"

namespace kro {
namespace {

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// A KEY=value line of /etc/machine-info, with shell quotes removed.
std::optional<std::string> machineInfo(const std::string& key) {
    auto bytes = env().files->read("/etc/machine-info");
    if (!bytes) return std::nullopt;
    std::istringstream lines(*bytes);
    std::string line;
    while (std::getline(lines, line)) {
        line = trimmed(line);
        if (line.rfind(key + "=", 0) != 0) continue;
        auto value = line.substr(key.size() + 1);
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front()) {
            value = value.substr(1, value.size() - 2);
        }
        if (!value.empty()) return value;
    }
    return std::nullopt;
}

std::optional<SnapshotMachine> fromChassisName(const std::string& chassis) {
    if (chassis == "laptop" || chassis == "convertible" || chassis == "tablet" || chassis == "handset") {
        return SnapshotMachine::laptop;
    }
    if (chassis == "server") return SnapshotMachine::macPro;
    if (chassis == "desktop") return SnapshotMachine::macStudio;
    return std::nullopt;
}

// SMBIOS chassis type codes.
std::optional<SnapshotMachine> fromChassisType(int type) {
    switch (type) {
        case 8: case 9: case 10: case 11: case 14: case 30: case 31: case 32: return SnapshotMachine::laptop;
        case 35: case 36: return SnapshotMachine::macMini;
        case 6: case 7: case 17: case 23: case 25: case 28: return SnapshotMachine::macPro;
        case 3: case 4: case 5: return SnapshotMachine::macStudio;
        default: return std::nullopt;
    }
}

// The chassis as hostnamectl names it: what the machine info says, else a virtual machine or a container,
// else the firmware's chassis type in the same groups.
std::optional<std::string> chassisName() {
    if (auto chassis = machineInfo("CHASSIS")) return chassis;
    for (const char* marker : {"/run/systemd/container", "/run/.containerenv", "/.dockerenv"}) {
        if (env().files->exists(marker)) return "container";
    }
    if (auto cpus = env().files->read("/proc/cpuinfo"); cpus && cpus->find(" hypervisor") != std::string::npos) {
        return "vm";
    }
    auto type = env().files->read("/sys/class/dmi/id/chassis_type");
    if (!type) return std::nullopt;
    try {
        switch (std::stoi(trimmed(*type))) {
            case 3: case 4: case 6: case 7: case 13: case 35: case 36: return "desktop";
            case 8: case 9: case 10: case 14: return "laptop";
            case 11: return "handset";
            case 17: case 23: case 28: case 29: return "server";
            case 30: return "tablet";
            case 31: case 32: return "convertible";
            case 33: case 34: return "embedded";
            default: return std::nullopt;
        }
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

std::string hostChassis() {
    static const std::pair<const char*, const char*> kWords[] = {
        {"desktop", "Desktop"}, {"laptop", "Laptop"}, {"convertible", "Convertible"}, {"server", "Server"},
        {"tablet", "Tablet"}, {"handset", "Handset"}, {"watch", "Watch"}, {"embedded", "Embedded device"},
        {"vm", "Virtual machine"}, {"container", "Container"}};
    if (auto name = chassisName()) {
        for (const auto& [chassis, words] : kWords) {
            if (*name == chassis) return words;
        }
    }
    return "Computer";
}

std::string machineWords(SnapshotMachine machine) {
    switch (machine) {
        case SnapshotMachine::laptop: return "Laptop";
        case SnapshotMachine::macMini: return "Mini PC";
        case SnapshotMachine::macPro: return "Tower";
        case SnapshotMachine::iMac: case SnapshotMachine::macStudio: return "Desktop";
    }
    return "Desktop";
}

SnapshotMachine hostMachine() {
    if (auto chassis = machineInfo("CHASSIS")) {
        if (auto machine = fromChassisName(*chassis)) return *machine;
    }
    if (auto type = env().files->read("/sys/class/dmi/id/chassis_type")) {
        try {
            if (auto machine = fromChassisType(std::stoi(trimmed(*type)))) return *machine;
        } catch (const std::exception&) {
        }
    }
    return SnapshotMachine::iMac;
}

std::optional<std::string> hostName() {
    if (auto pretty = machineInfo("PRETTY_HOSTNAME")) return pretty;
    for (const char* path : {"/etc/hostname", "/proc/sys/kernel/hostname"}) {
        if (auto bytes = env().files->read(path)) {
            auto name = trimmed(*bytes);
            if (!name.empty()) return name;
        }
    }
    return std::nullopt;
}

}  // namespace kro
