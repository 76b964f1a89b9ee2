#pragma once
// The kinds of colour text that recognition looks for. Stored by text.
#include <array>
#include <optional>
#include <set>
#include <string>

#include "platform/CaseText.h"

namespace kro {

enum class ImportColorPattern { html, cssHEX, cssRGB, cssHSL, appleHSB, appleRGB };

inline constexpr std::array<ImportColorPattern, 6> kAllImportColorPatterns = {
    ImportColorPattern::html,   ImportColorPattern::cssHEX,   ImportColorPattern::cssRGB,
    ImportColorPattern::cssHSL, ImportColorPattern::appleHSB, ImportColorPattern::appleRGB};

inline std::string text(ImportColorPattern pattern) {
    switch (pattern) {
        case ImportColorPattern::html: return "HTML Color Names";
        case ImportColorPattern::cssHEX: return "CSS Hex";
        case ImportColorPattern::cssRGB: return "CSS RGB";
        case ImportColorPattern::cssHSL: return "CSS HSL";
        case ImportColorPattern::appleHSB: return "UIColor/NSColor HSB";
        case ImportColorPattern::appleRGB: return "UIColor/NSColor RGB";
    }
    return "";
}

// The case name, as the command line spells it ("cssHEX").
inline std::string caseName(ImportColorPattern pattern) {
    switch (pattern) {
        case ImportColorPattern::html: return "html";
        case ImportColorPattern::cssHEX: return "cssHEX";
        case ImportColorPattern::cssRGB: return "cssRGB";
        case ImportColorPattern::cssHSL: return "cssHSL";
        case ImportColorPattern::appleHSB: return "appleHSB";
        case ImportColorPattern::appleRGB: return "appleRGB";
    }
    return "";
}

inline std::optional<ImportColorPattern> importColorPatternFromText(const std::string& value) {
    return caseFromText<ImportColorPattern>(value, kAllImportColorPatterns);
}

inline std::set<ImportColorPattern> allImportColorPatterns() {
    return {kAllImportColorPatterns.begin(), kAllImportColorPatterns.end()};
}

}  // namespace kro
