#pragma once
// A palette as the exchange layer carries it: global colours, then named groups in file order.
#include <optional>
#include <string>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/PaletteFormat.h"

namespace PAL {

struct Group {
    explicit Group(std::string name = {}, std::vector<Color> colors = {});

    kro::Json json() const;
    // "name" may be absent, "colors" is required. Throws CommonError invalidFormat.
    static Group fromJson(const kro::Json& json);

    std::string id;  // fresh at construction, never written
    std::string name;
    std::vector<Color> colors;
};

// Where a colour sits: outside any group, or in the group at an index.
struct ColorGrouping {
    static ColorGrouping global() { return {}; }
    static ColorGrouping group(std::size_t index) { return ColorGrouping{index}; }
    bool isGlobal() const { return !groupIndex.has_value(); }
    bool operator==(const ColorGrouping&) const = default;

    std::optional<std::size_t> groupIndex;
};

enum class ExportGradientStyle { smooth, stepped };

struct Palette {
    struct ColorIndex {
        ColorGrouping group;
        std::size_t colorIndex = 0;
        bool operator==(const ColorIndex&) const = default;
    };

    explicit Palette(std::string name = {}, std::vector<Color> colors = {}, std::vector<Group> groups = {});

    // The global colours, then each group's colours in order.
    std::vector<Color> allColors() const;
    std::size_t totalColorCount() const;
    ColorIndex appendColor(Color color);
    // `count` colours evenly spaced from `from` to `to`. Throws tooFewColors when count < 1.
    static Palette interpolated(const Color& from, const Color& to, int count, std::string name = {});

    kro::Json json() const;
    // Throws CommonError invalidFormat.
    static Palette fromJson(const kro::Json& json);

    std::string id;  // fresh at construction, never written
    std::string name;
    std::vector<Color> colors;
    std::vector<Group> groups;
    std::optional<PaletteFormat> format;  // set by every decoder
};

}  // namespace PAL
