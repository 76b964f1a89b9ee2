#include "documents/PaletteMapping.h"

#include <algorithm>

#include "exchange/PalColor.h"

namespace kro {
namespace {

ColorRef libraryColor(const PAL::Color& color, const std::string& group) {
    auto made = Color::make(color.platformColor(),
                            color.name.empty() ? std::nullopt : std::optional<std::string>(color.name));
    made->group = Color::normalizedGroup(group);
    return made;
}

}  // namespace

std::vector<ColorRef> libraryColors(const PAL::Palette& palette) {
    std::vector<ColorRef> colors;
    colors.reserve(palette.totalColorCount());
    for (const auto& color : palette.colors) colors.push_back(libraryColor(color, {}));
    for (const auto& group : palette.groups) {
        for (const auto& color : group.colors) colors.push_back(libraryColor(color, group.name));
    }
    return colors;
}

PAL::Palette exchangePalette(const Palette& palette) {
    PAL::Palette result(palette.name.value_or(""));
    for (const auto& color : palette.colors) {
        auto exchanged = PAL::Color::rgb(color->red, color->green, color->blue, color->alpha, color->name.value_or(""));
        if (color->group.empty()) {
            result.colors.push_back(std::move(exchanged));
            continue;
        }
        auto group = std::find_if(result.groups.begin(), result.groups.end(),
                                  [&](const PAL::Group& candidate) { return candidate.name == color->group; });
        if (group == result.groups.end()) group = result.groups.insert(result.groups.end(), PAL::Group(color->group));
        group->colors.push_back(std::move(exchanged));
    }
    return result;
}

}  // namespace kro
