#pragma once
// The list of colour names: entries of a six-digit hex text (no "#", either case) and a name, in the order
// the nearest-name search walks them. The shipped list is loaded once, on first use, from "ColorList.json".
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kro {

class ColorList {
public:
    using Entry = std::vector<std::string>;

    explicit ColorList(std::vector<Entry> names);
    // A JSON array of arrays of texts; anything else (bad JSON, a number among the texts) gives an empty list.
    static ColorList fromJson(std::string_view text);
    // The shipped list; empty when the resource is missing or unreadable.
    static const ColorList& shared();

    const std::vector<Entry>& names() const { return names_; }

    // What the nearest-name search needs, worked out once. The walk ends at the first entry that does not
    // have exactly two elements; `walkLength` is the number of entries before it.
    std::size_t walkLength() const { return walkComponents_.size(); }
    // The 8-bit red, green and blue of each walked entry's hex text, as a scanner reads its pairs.
    const std::vector<std::array<int, 3>>& walkComponents() const { return walkComponents_; }
    // The first walked entry whose hex text equals `key` without regard to case.
    std::optional<std::size_t> exactMatch(const std::string& key) const;

private:
    std::vector<Entry> names_;
    std::vector<std::array<int, 3>> walkComponents_;
    std::unordered_map<std::string, std::size_t> firstIndexByHex_;  // by case-folded hex text
};

}  // namespace kro
