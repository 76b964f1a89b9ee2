// JSON palette reader on arbitrary bytes: it reads a palette or refuses exactly as reading the whole
// document tree does (tests/support/JSONPaletteTree.h), the same palette or the same error, and what it
// reads the writer writes byte for byte as the tree writes it.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/coders/JSONCoder.h"
#include "tests/support/JSONPaletteTree.h"

namespace {

// The palette, or the error's case and what it carries.
template <typename Decode>
std::pair<std::optional<PAL::Palette>, std::string> outcome(Decode decode) {
    try {
        return {decode(), ""};
    } catch (const PAL::CommonError& error) {
        return {std::nullopt, std::string(PAL::caseName(error.errorCase())) + error.text().value_or("")};
    }
}

bool sameColors(const std::vector<PAL::Color>& a, const std::vector<PAL::Color>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name || a[i].colorSpace != b[i].colorSpace || a[i].colorType != b[i].colorType ||
            !(a[i].colorComponents == b[i].colorComponents) || a[i].alpha != b[i].alpha)
            return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static PAL::JSONCoder coder;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto streamed = outcome([&] { return coder.decode(text); });
    const auto tree = outcome([&] { return jsontree::decode(text); });
    if (streamed.second != tree.second) __builtin_trap();
    if (!tree.first) return 0;
    const PAL::Palette& a = *streamed.first;
    const PAL::Palette& b = *tree.first;
    if (a.name != b.name || !sameColors(a.colors, b.colors) || a.groups.size() != b.groups.size()) __builtin_trap();
    for (std::size_t g = 0; g < a.groups.size(); ++g)
        if (a.groups[g].name != b.groups[g].name || !sameColors(a.groups[g].colors, b.groups[g].colors)) __builtin_trap();
    for (const bool pretty : {true, false}) {
        coder.prettyPrint = pretty;
        if (coder.encode(a) != jsontree::encode(a, pretty)) __builtin_trap();
    }
    return 0;
}
