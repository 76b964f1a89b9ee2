// Any template text with any colour: the evaluator returns a text and never crashes, hangs or overflows.
#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/ColorFormatParse.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    // Components a little outside 0…1 as well, which the hex rendering prints without clamping.
    auto component = [](uint8_t byte) { return (static_cast<int>(byte) - 16) / 223.0; };
    const auto color = kro::ColorValue::rgb(component(data[0]), component(data[1]), component(data[2]), component(data[3]));
    const std::string format(reinterpret_cast<const char*>(data + 4), size - 4);
    const auto text = kro::ColorFormatParse::parse(color, format);
    (void)text;
    return 0;
}
