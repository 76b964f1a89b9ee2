#include "formats/color/ColorList.h"

#include <nlohmann/json.hpp>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "formats/color/ColorConversions.h"
#include "platform/Resources.h"

namespace kro {
namespace {

// Texts equal without regard to case have the same folding ("FF", "ff" and the ligature "\uFB00" all fold to "ff").
std::string caseFolded(const std::string& text) {
    std::string folded;
    return icu::UnicodeString::fromUTF8(text).foldCase(U_FOLD_CASE_DEFAULT).toUTF8String(folded);
}

}  // namespace

ColorList::ColorList(std::vector<Entry> names) : names_(std::move(names)) {
    for (const auto& entry : names_) {
        if (entry.size() != 2) break;
        firstIndexByHex_.try_emplace(caseFolded(entry[0]), walkComponents_.size());
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
    auto found = firstIndexByHex_.find(caseFolded(key));
    if (found == firstIndexByHex_.end()) return std::nullopt;
    return found->second;
}

}  // namespace kro
