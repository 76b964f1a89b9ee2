#pragma once
// Colour vision deficiencies the program can simulate. Stored by label.
#include <array>
#include <optional>
#include <string>

#include "platform/ColorValue.h"
#include "platform/CaseText.h"

namespace kro {

enum class ColorBlindness { normal, deuteranopia, protanopia, tritanopia, achromatopsia };

inline constexpr std::array<ColorBlindness, 5> kAllColorBlindness = {
    ColorBlindness::normal, ColorBlindness::deuteranopia, ColorBlindness::protanopia, ColorBlindness::tritanopia,
    ColorBlindness::achromatopsia};

inline std::string text(ColorBlindness blindness) {
    switch (blindness) {
        case ColorBlindness::normal: return "Normal";
        case ColorBlindness::deuteranopia: return "Deuteranopia";
        case ColorBlindness::protanopia: return "Protanopia";
        case ColorBlindness::tritanopia: return "Tritanopia";
        case ColorBlindness::achromatopsia: return "Achromatopsia";
    }
    return "";
}

inline std::optional<ColorBlindness> colorBlindnessFromText(const std::string& value) {
    return caseFromText<ColorBlindness>(value, kAllColorBlindness);
}

// The colour as a person with `blindness` sees it (implemented with the contrast tools).
ColorValue simulated(const ColorValue& color, ColorBlindness blindness);

}  // namespace kro
