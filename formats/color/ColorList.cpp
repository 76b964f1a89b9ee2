#include "formats/color/ColorList.h"

#include <nlohmann/json.hpp>

#include "formats/color/ColorConversions.h"
#include "platform/Resources.h"

namespace kro {
namespace {

// Only ASCII letters change: the key is ASCII, and no other character equals an ASCII hex digit in any case.
std::string asciiUpper(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

}  // namespace

ColorList::ColorList(std::vector<Entry> names) : names_(std::move(names)) {
    for (const auto& entry : names_) {
        if (entry.size() != 2) break;
        firstIndexByHex_.try_emplace(asciiUpper(entry[0]), walkComponents_.size());
        walkComponents_.push_back(scanHexPairs(entry[0]));
    }
}

ColorList ColorList::fromJson(std::string_view text) {
    auto json = nlohmann::json::parse(text, nullptr, false);
    std::vector<Entry> names;
    if (!json.is_array()) return ColorList({});
    for (const auto& item : json) {
        if (!item.is_array()) return ColorList({});
        Entry entry;
        for (const auto& element : item) {
            if (!element.is_string()) return ColorList({});
            entry.push_back(element.get<std::string>());
        }
        names.push_back(std::move(entry));
    }
    return ColorList(std::move(names));
}

const ColorList& ColorList::shared() {
    static const ColorList list = [] {
        auto bytes = resource("ColorList.json");
        return bytes ? fromJson(*bytes) : ColorList({});
    }();
    return list;
}

std::optional<std::size_t> ColorList::exactMatch(const std::string& key) const {
    auto found = firstIndexByHex_.find(key);
    if (found == firstIndexByHex_.end()) return std::nullopt;
    return found->second;
}

}  // namespace kro
