#include "formats/color/AutoImport.h"

#include "formats/color/ColorConversions.h"
#include "formats/color/ImportColor.h"

namespace kro {

AutoImport::AutoImport(ReadClipboardText readClipboardText, std::set<ImportColorPattern> patterns,
                       ReceiveColors receiveColors)
    : readClipboardText_(std::move(readClipboardText)),
      patterns_(std::move(patterns)),
      receiveColors_(std::move(receiveColors)) {}

std::optional<std::string> AutoImport::tick() {
    auto text = readClipboardText_();
    // An idle tick costs one comparison: the text is scanned only when it changed.
    if (!text || text == autoImportLast_) return std::nullopt;
    autoImportLast_ = std::move(text);

    // Colours seen before are compared by hex text. Two equal colours in one new text are both kept,
    // as the user copied them both.
    std::vector<ColorValue> fresh;
    for (auto& color : ImportColor::colors(*autoImportLast_, patterns_)) {
        if (!autoImportColors_.contains(hexText(color))) fresh.push_back(std::move(color));
    }
    if (fresh.empty()) return std::nullopt;
    for (const auto& color : fresh) autoImportColors_.insert(hexText(color));
    receiveColors_(fresh);
    return fresh.size() == 1 ? kOneColorMessage : kSeveralColorsMessage;
}

}  // namespace kro
