#include "exchange/PalPalette.h"

#include "exchange/PalErrors.h"

namespace PAL {

namespace {

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

kro::Json colorsJson(const std::vector<Color>& colors) {
    kro::Json array = kro::Json::array();
    for (const auto& color : colors) array.push_back(color.json());
    return array;
}

std::vector<Color> colorsFromJson(const kro::Json& json) {
    if (!json.is_array()) throw invalidFormat();
    std::vector<Color> colors;
    colors.reserve(json.size());
    for (const auto& color : json) colors.push_back(Color::fromJson(color));
    return colors;
}

std::string optionalName(const kro::Json& json) {
    const auto name = json.find("name");
    if (name == json.end()) return {};
    if (!name->is_string()) throw invalidFormat();
    return name->get<std::string>();
}

}  // namespace

Group::Group(std::string name, std::vector<Color> colors)
    : id(kro::newUUID()), name(std::move(name)), colors(std::move(colors)) {}

kro::Json Group::json() const { return {{"name", name}, {"colors", colorsJson(colors)}}; }

Group Group::fromJson(const kro::Json& json) {
    if (!json.is_object() || !json.contains("colors")) throw invalidFormat();
    return Group(optionalName(json), colorsFromJson(json["colors"]));
}

Palette::Palette(std::string name, std::vector<Color> colors, std::vector<Group> groups)
    : id(kro::newUUID()), name(std::move(name)), colors(std::move(colors)), groups(std::move(groups)) {}

std::vector<Color> Palette::allColors() const {
    std::vector<Color> all;
    all.reserve(totalColorCount());
    all.insert(all.end(), colors.begin(), colors.end());
    for (const auto& group : groups) all.insert(all.end(), group.colors.begin(), group.colors.end());
    return all;
}

std::size_t Palette::totalColorCount() const {
    std::size_t count = colors.size();
    for (const auto& group : groups) count += group.colors.size();
    return count;
}

Palette::ColorIndex Palette::appendColor(Color color) {
    colors.push_back(std::move(color));
    return {ColorGrouping::global(), colors.size() - 1};
}

Palette Palette::interpolated(const Color& from, const Color& to, int count, std::string name) {
    return Palette(std::move(name), PAL::interpolated(from, to, count));
}

kro::Json Palette::json() const {
    kro::Json groupsJson = kro::Json::array();
    for (const auto& group : groups) groupsJson.push_back(group.json());
    return {{"name", name}, {"colors", colorsJson(colors)}, {"groups", groupsJson}};
}

// A missing "name" or "groups" reads as empty; "colors" is required, as in a group.
Palette Palette::fromJson(const kro::Json& json) {
    if (!json.is_object() || !json.contains("colors")) throw invalidFormat();
    Palette palette(optionalName(json), colorsFromJson(json["colors"]));
    if (const auto groups = json.find("groups"); groups != json.end()) {
        if (!groups->is_array()) throw invalidFormat();
        for (const auto& group : *groups) palette.groups.push_back(Group::fromJson(group));
    }
    return palette;
}

}  // namespace PAL
