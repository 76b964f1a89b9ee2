#pragma once
// The colour profile a pick is converted to. Stored by its text, which is also its label.
#include <array>
#include <memory>
#include <optional>
#include <string>

#include "platform/ColorValue.h"
#include "platform/CaseText.h"

namespace kro {

enum class ColorSpaceProfile { native, displayP3, sRGB, genericRGB, adobeRGB1998 };

inline constexpr std::array<ColorSpaceProfile, 5> kAllColorSpaceProfiles = {
    ColorSpaceProfile::native, ColorSpaceProfile::displayP3, ColorSpaceProfile::sRGB, ColorSpaceProfile::genericRGB,
    ColorSpaceProfile::adobeRGB1998};

inline std::string text(ColorSpaceProfile profile) {
    switch (profile) {
        case ColorSpaceProfile::native: return "Display Native";
        case ColorSpaceProfile::displayP3: return "Display P3";
        case ColorSpaceProfile::sRGB: return "sRGB IEC61966-2.1";
        case ColorSpaceProfile::genericRGB: return "Generic RGB";
        case ColorSpaceProfile::adobeRGB1998: return "Adobe RGB";
    }
    return "";
}

// An unknown text gives no profile.
inline std::optional<ColorSpaceProfile> colorSpaceProfileFromText(const std::string& value) {
    return caseFromText<ColorSpaceProfile>(value, kAllColorSpaceProfiles);
}

// The space a profile converts to; null for `native`, which keeps the display's own numbers.
inline std::shared_ptr<const ColorSpace> colorSpace(ColorSpaceProfile profile) {
    switch (profile) {
        case ColorSpaceProfile::native: return nullptr;
        case ColorSpaceProfile::displayP3: return ColorSpace::displayP3();
        case ColorSpaceProfile::sRGB: return ColorSpace::sRGB();
        case ColorSpaceProfile::genericRGB: return ColorSpace::genericRGB();
        case ColorSpaceProfile::adobeRGB1998: return ColorSpace::adobeRGB1998();
    }
    return nullptr;
}

}  // namespace kro
