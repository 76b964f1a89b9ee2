// Any bytes as a stored format catalogue: decoding refuses or accepts, and an accepted catalogue encodes
// again, answers lookups and survives the launch repairs.
#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/ColorFormats.h"
#include "library/JsonDecode.h"
#include "platform/testing/TestEnvironment.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static kro::testing::TestEnvironment environment;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto json = kro::Json::parse(bytes, nullptr, false);
    if (json.is_discarded()) return 0;
    std::shared_ptr<kro::ColorFormats> catalogue;
    try {
        catalogue = kro::ColorFormats::fromJson(json);
    } catch (const kro::JsonDecodeError&) {
        return 0;
    }
    const auto again = kro::ColorFormats::fromJson(kro::Json::parse(kro::compactText(catalogue->toJson())));
    if (again->formats.size() != catalogue->formats.size()) __builtin_trap();
    const auto color = kro::ColorValue::rgb(1.0, 0.0, 0.5);
    (void)catalogue->clipboardString(color);
    (void)catalogue->menuString(color);
    (void)catalogue->uniqueName(catalogue->selectedFormatName);
    catalogue->fixUUIDS();
    return 0;
}
