#pragma once
// A named group of the format list. It refers to its formats by name, so a renamed format leaves its group.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Json.h"

namespace kro {

class ColorFormatGroup {
public:
    ColorFormatGroup();

    Json toJson() const;
    // Forgiving like the formats; a wrong type throws JsonDecodeError.
    static std::shared_ptr<ColorFormatGroup> fromJson(const Json& json);

    // Moves updatedAt to now and logs it; nothing when it already reads now.
    void stamp();

    bool operator==(const ColorFormatGroup& other) const = default;

    std::string name;
    std::string image;
    std::vector<std::string> group;  // the names of its formats
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

using ColorFormatGroupRef = std::shared_ptr<ColorFormatGroup>;

bool sameGroups(const std::vector<ColorFormatGroupRef>& a, const std::vector<ColorFormatGroupRef>& b);

}  // namespace kro
