#pragma once
// The automatic import of colours from the clipboard: one tick of the agent's once-a-second timer.
// The timer and the library belong to the agent; this keeps the rules of a tick.
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "formats/color/ImportColorPattern.h"
#include "platform/ColorValue.h"

namespace kro {

class AutoImport {
public:
    using ReadClipboardText = std::function<std::optional<std::string>()>;
    using ReceiveColors = std::function<void(const std::vector<ColorValue>&)>;

    static constexpr const char* kOneColorMessage = "Color Imported";
    static constexpr const char* kSeveralColorsMessage = "Colors Imported";

    AutoImport(ReadClipboardText readClipboardText, std::set<ImportColorPattern> patterns, ReceiveColors receiveColors);

    // Follows the user's `autoImportPattern` preference.
    void setPatterns(std::set<ImportColorPattern> patterns) { patterns_ = std::move(patterns); }

    // Scans the clipboard text when it changed since the last tick and hands the colours not imported
    // before to the receiver. Returns the message to show: "Color Imported", "Colors Imported" for more
    // than one, or nothing when no colour was handed over.
    std::optional<std::string> tick();

    // The last clipboard text seen, and the hex texts of every colour imported so far. Both live only in
    // memory, so the text on the clipboard at launch is scanned once.
    const std::optional<std::string>& autoImportLast() const { return autoImportLast_; }
    const std::set<std::string>& autoImportColors() const { return autoImportColors_; }

private:
    ReadClipboardText readClipboardText_;
    std::set<ImportColorPattern> patterns_;
    ReceiveColors receiveColors_;
    std::optional<std::string> autoImportLast_;
    std::set<std::string> autoImportColors_;
};

}  // namespace kro
