#include "formats/SmartFormats.h"
#include "formats/SmartProfiles.h"

namespace kro {

std::optional<std::string> smartFormatName(const std::string& bundleIdentifier) {
    const auto item = SmartFormats::shared().itemInForce(bundleIdentifier);
    return item ? std::optional<std::string>(item->format) : std::nullopt;
}

ColorSpaceProfile profileForSample(const std::string& bundleIdentifier, ColorSpaceProfile preferred) {
    const auto item = SmartProfiles::shared().itemInForce(bundleIdentifier);
    return item ? item->profile : preferred;
}

}  // namespace kro
