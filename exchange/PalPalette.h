#pragma once
// A palette as the exchange layer carries it: global colours, then named groups in file order.
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/PaletteFormat.h"

namespace PAL {

struct Group {
    explicit Group(std::string name = {}, std::vector<Color> colors = {});

    UUID id;  // fresh at construction, never written
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

struct Palette;

// Every colour of a palette in the order of allColors(), read where it stands instead of copied: the
// global colours, then each group's. Valid while the palette is left unchanged.
class ColorsInOrder {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Color;
        using difference_type = std::ptrdiff_t;
        using pointer = const Color*;
        using reference = const Color&;

        Iterator() = default;
        Iterator(const Palette* palette, std::size_t list, std::size_t index);
        reference operator*() const;
        pointer operator->() const { return &**this; }
        Iterator& operator++();
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator&) const = default;

    private:
        void skipEmptyLists();
        const Palette* palette_ = nullptr;
        std::size_t list_ = 0;  // 0 the global colours, then 1 + the group's index
        std::size_t index_ = 0;
    };

    explicit ColorsInOrder(const Palette& palette) : palette_(&palette) {}
    Iterator begin() const;
    Iterator end() const;
    std::size_t size() const;
    bool empty() const { return size() == 0; }
    // Walks the groups: for the few coders that address colours by position.
    const Color& operator[](std::size_t index) const;

private:
    const Palette* palette_;
};

struct Palette {
    struct ColorIndex {
        ColorGrouping group;
        std::size_t colorIndex = 0;
        bool operator==(const ColorIndex&) const = default;
    };

    explicit Palette(std::string name = {}, std::vector<Color> colors = {}, std::vector<Group> groups = {});

    // The global colours, then each group's colours in order, as a new list.
    std::vector<Color> allColors() const;
    // The same colours in place, for writers that only read them.
    ColorsInOrder eachColor() const { return ColorsInOrder(*this); }
    std::size_t totalColorCount() const;
    ColorIndex appendColor(Color color);
    // `count` colours evenly spaced from `from` to `to`. Throws tooFewColors when count < 1.
    static Palette interpolated(const Color& from, const Color& to, int count, std::string name = {});

    UUID id;  // fresh at construction, never written
    std::string name;
    std::vector<Color> colors;
    std::vector<Group> groups;
    std::optional<PaletteFormat> format;  // set by every decoder
};

}  // namespace PAL
