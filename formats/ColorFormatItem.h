#pragma once
// One colour format of the catalogue: three templates (a compact one for list rows, one for the picker's
// label and the full one that is copied) and the options applied to whatever a template gives.
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ColorValue.h"
#include "platform/Json.h"

namespace kro {

// Option name to switch, in stored order. Three names mean something; the rest are kept and ignored.
using ColorFormatOptions = std::vector<std::pair<std::string, bool>>;

namespace ColorFormatOption {
inline constexpr const char* allCaps = "All Caps";
inline constexpr const char* showPrefix = "Show Prefix #";
inline constexpr const char* removeWhiteSpaces = "Remove white spaces";
}  // namespace ColorFormatOption

// Applies each option in order. An absent option leaves the text alone, which for the first two differs
// from false: false forces lower case and takes a leading "#" off.
std::string applyOptions(std::string text, const ColorFormatOptions& options);

class ColorFormatItem {
public:
    // The template a new custom format starts with.
    static const std::string defaultTemplate;

    // A fresh custom-looking item: new uuid, createdAt now, the default template everywhere.
    ColorFormatItem();

    Json toJson() const;
    // Forgiving: every key may be absent and takes a default; a value of a wrong type throws JsonDecodeError.
    static std::shared_ptr<ColorFormatItem> fromJson(const Json& json);

    // The template evaluated for `color`, then the options applied.
    std::string text(const ColorValue& color, const std::string& format) const;

    // Changes one field from the user interface: stores the value, stamps updatedAt, saves the catalogue and
    // announces the change. Nothing happens when the value is the same.
    template <class T>
    void change(T ColorFormatItem::*field, T value) {
        if (this->*field == value) return;
        this->*field = std::move(value);
        didChange();
    }

    bool operator==(const ColorFormatItem& other) const = default;

    std::string uuid;
    std::string name;
    std::string notes;
    std::string image = "z-custom";
    ColorFormatOptions options;
    std::string menuFormat;
    std::string clipboardFormat;
    std::string pickerFormat;
    // Carried and stored, never compared by any logic.
    long long build = 0;
    std::string version;
    bool custom = false;
    // Shown in the user's format menu.
    bool selected = false;
    std::string createdAt;
    std::optional<std::string> updatedAt;

private:
    void didChange();
};

using ColorFormatItemRef = std::shared_ptr<ColorFormatItem>;

// Formats are shared by reference; two lists are equal when their formats are equal field by field.
bool sameFormats(const std::vector<ColorFormatItemRef>& a, const std::vector<ColorFormatItemRef>& b);

}  // namespace kro
