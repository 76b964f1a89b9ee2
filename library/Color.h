#pragma once
// A colour of the library. Shared by reference; its JSON is the persistent form of every store, undo state,
// cloud record, snapshot and document.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ColorValue.h"
#include "platform/Json.h"

namespace kro {

class Color {
public:
    // A black colour named "Black", alpha 1, with a fresh uuid and createdAt.
    Color();

    // From a platform colour converted to generic RGB. Without a name, `name` and `originalName` come from
    // the colour name list (and stay "Black" when the list has none).
    static std::shared_ptr<Color> make(const ColorValue& value, std::optional<std::string> name = std::nullopt);
    // From components already in generic RGB.
    static std::shared_ptr<Color> make(double red, double green, double blue, double alpha,
                                       std::optional<std::string> name = std::nullopt);

    // A component as it is stored: a 32-bit float, out-of-range magnitudes held at the largest float.
    static float storedFloat(double value);
    // Six upper-case hex digits from the stored floats, each ×255 truncated (0.999 gives FE).
    static std::string hexText(float red, float green, float blue);
    // Split on "/", trim, drop empty parts, join with " / ".
    static std::string normalizedGroup(const std::string& group);

    Json toJson() const;
    // compactText(toJson()), appended without building the tree.
    void appendJsonText(std::string& out) const;
    // Forgiving: missing keys take defaults; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<Color> fromJson(const Json& json);
    // A copy with its own identity.
    std::shared_ptr<Color> copy() const;

    // The platform colour of the stored components (generic RGB).
    ColorValue colorValue() const;
    // The colour's log line: name and updatedAt.
    std::string logDescription() const;

    // The change pipeline for a colour changed in place: stamps updatedAt, logs, then runs the library's.
    void trigger(bool undo, bool save, bool notify, bool cloud, const char* file = __builtin_FILE(),
                 const char* function = __builtin_FUNCTION(), int line = __builtin_LINE());

    // Field-wise.
    bool operator==(const Color& other) const = default;

    std::string uuid;
    std::optional<std::string> name = "Black";
    std::optional<std::string> originalName = "Black";
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
    std::string hex = "000000";
    std::optional<std::string> notes;
    std::vector<std::string> tags;
    std::string group;
    std::string createdAt;
    std::optional<std::string> updatedAt;
};

using ColorRef = std::shared_ptr<Color>;

}  // namespace kro
