#pragma once
// The identity a colour, group or palette gets at construction: never written to a file and never
// compared with another record's. It is kept as the UUID's sixteen bytes rather than its text, since a
// decoded palette makes one for every colour.
#include <ostream>
#include <string>

#include "platform/Json.h"

namespace PAL {

struct UUID {
    // A fresh random (version 4) identity.
    static UUID make() { return {kro::newUUIDBytes()}; }
    // Upper-case canonical text, 8-4-4-4-12.
    std::string text() const { return kro::uuidText(bytes); }
    bool operator==(const UUID&) const = default;

    kro::UUIDBytes bytes{};
};

inline std::ostream& operator<<(std::ostream& out, const UUID& uuid) { return out << uuid.text(); }

}  // namespace PAL
