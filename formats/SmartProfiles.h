#pragma once
// Per-application colour profiles: the profile a sample takes under that application's window.
#include <string>

#include "formats/SmartItems.h"
#include "formats/SmartList.h"
#include "formats/color/ColorSpaceProfile.h"

namespace kro {

using SmartProfiles = SmartList<SmartProfileItem>;

// The profile for a sample under the application's window: the smart profile when one applies, else the
// `preferred` one (the preferences' choice).
ColorSpaceProfile profileForSample(const std::string& bundleIdentifier, ColorSpaceProfile preferred);

}  // namespace kro
