#include "cli/ColorArgument.h"

#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"

namespace kro::cli {

namespace {
bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

std::optional<ColorValue> hexColor(std::string_view text) {
    if (!text.empty() && text.front() == '#') text.remove_prefix(1);
    if (text.size() != 6) return std::nullopt;
    for (char c : text) {
        if (!isHexDigit(c)) return std::nullopt;
    }
    return colorFromHex(text);
}
}  // namespace

std::optional<ColorValue> parseColorArgument(std::string_view text) {
    // Hex first: "123456" is a colour even where recognition would want a "#".
    if (auto color = hexColor(text)) return color;
    const auto found = ImportColor::colors(text, allImportColorPatterns());
    if (found.empty()) return std::nullopt;
    return found.front();
}

std::string cannotReadColour(std::string_view text) { return "cannot read color '" + std::string(text) + "'"; }

}  // namespace kro::cli
