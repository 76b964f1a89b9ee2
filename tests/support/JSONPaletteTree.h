#pragma once
// The layer's JSON palette form read and written through a whole document tree: the plain way, which
// the JSON coder's streaming reader and direct writer must match byte for byte and error for error (the
// tests and the fuzz target hold them to it). Where the order of the checks was left to the compiler in
// the tree code (a constructor's arguments), it is spelled out here as GCC ran it: a palette's or
// group's colours are judged before its name.
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalErrors.h"
#include "exchange/PalPalette.h"
#include "platform/Json.h"

namespace jsontree {

inline kro::Json colorsJson(const std::vector<PAL::Color>& colors) {
    kro::Json array = kro::Json::array();
    for (const auto& color : colors) array.push_back(color.json());
    return array;
}

inline std::string encode(const PAL::Palette& palette, bool prettyPrint) {
    kro::Json groups = kro::Json::array();
    for (const auto& group : palette.groups) groups.push_back({{"name", group.name}, {"colors", colorsJson(group.colors)}});
    const kro::Json json{{"name", palette.name}, {"colors", colorsJson(palette.colors)}, {"groups", groups}};
    const auto handler = kro::Json::error_handler_t::replace;
    return prettyPrint ? json.dump(2, ' ', false, handler) + "\n" : json.dump(-1, ' ', false, handler);
}

inline PAL::CommonError invalidFormat() { return PAL::CommonError(PAL::CommonError::Case::invalidFormat); }

inline std::vector<PAL::Color> colorsFromJson(const kro::Json& json) {
    if (!json.is_array()) throw invalidFormat();
    std::vector<PAL::Color> colors;
    for (const auto& color : json) colors.push_back(PAL::Color::fromJson(color));
    return colors;
}

inline std::string optionalName(const kro::Json& json) {
    const auto name = json.find("name");
    if (name == json.end()) return {};
    if (!name->is_string()) throw invalidFormat();
    return name->get<std::string>();
}

// Throws what the coder throws.
inline PAL::Palette decode(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const auto json = kro::Json::parse(text, nullptr, false);
    if (json.is_discarded() || !json.is_object() || !json.contains("colors")) throw invalidFormat();
    auto colors = colorsFromJson(json["colors"]);
    PAL::Palette palette(optionalName(json), std::move(colors));
    if (const auto groups = json.find("groups"); groups != json.end()) {
        if (!groups->is_array()) throw invalidFormat();
        for (const auto& group : *groups) {
            if (!group.is_object() || !group.contains("colors")) throw invalidFormat();
            auto groupColors = colorsFromJson(group["colors"]);
            palette.groups.emplace_back(optionalName(group), std::move(groupColors));
        }
    }
    palette.format = PAL::PaletteFormat::json;
    return palette;
}

}  // namespace jsontree
