#pragma once
// The body every palette coder's fuzz target shares: any bytes given to the decoder must be read or
// refused without a crash, hang or leak, and what was read must then pass the target's round-trip check.
// Exceptions past the first decode escape on purpose: libFuzzer reports them as crashes.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "exchange/coders/Coders.h"

// The palette read from the bytes; nothing when the decoder refused them, which is fine as long as it
// neither crashed nor hung.
inline std::optional<PAL::Palette> fuzzDecode(const PAL::PaletteCoder& coder, std::string_view bytes) {
    try {
        return coder.decode(bytes);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

namespace roundtrip {

// The format is read only: reading is all there is.
struct ReadOnly {
    void operator()(const PAL::PaletteCoder&, const PAL::Palette&, std::string_view) const {}
};

// What was read writes and reads back with as many colours, up to the most the format keeps.
struct SameCount {
    std::size_t colorLimit = std::numeric_limits<std::size_t>::max();

    void operator()(const PAL::PaletteCoder& coder, const PAL::Palette& read, std::string_view) const {
        const auto expected = std::min(read.allColors().size(), colorLimit);
        if (coder.decode(coder.encode(read)).allColors().size() != expected) __builtin_trap();
    }
};

// What was read writes and reads back with as many colours, and after that first trip through the writer
// nothing changes any more: a second trip gives the same colours, names and spaces (within the palette
// comparison's tolerance).
struct Stable {
    void operator()(const PAL::PaletteCoder& coder, const PAL::Palette& read, std::string_view) const {
        const PAL::Palette once = coder.decode(coder.encode(read));
        if (once.allColors().size() != read.allColors().size()) __builtin_trap();
        const PAL::Palette twice = coder.decode(coder.encode(once));
        if (twice.name != once.name || twice.allColors() != once.allColors()) __builtin_trap();
    }
};

// What was read writes and reads back to the same colours in the same spaces, each component within
// `tolerance` (the precision the format writes); alpha is compared only where the format keeps it.
struct SameColors {
    double tolerance;
    bool keepsAlpha;

    void operator()(const PAL::PaletteCoder& coder, const PAL::Palette& palette, std::string_view) const {
        const auto read = palette.allColors();
        const auto again = coder.decode(coder.encode(palette)).allColors();
        if (again.size() != read.size()) __builtin_trap();
        for (std::size_t i = 0; i < read.size(); ++i) {
            const auto& before = read[i].colorComponents;
            const auto& after = again[i].colorComponents;
            if (again[i].colorSpace != read[i].colorSpace || after.size() != before.size()) __builtin_trap();
            for (std::size_t c = 0; c < before.size(); ++c)
                if (std::abs(after[c] - before[c]) > tolerance) __builtin_trap();
            if (keepsAlpha && std::abs(again[i].alpha - read[i].alpha) > tolerance) __builtin_trap();
        }
    }
};

// The format has one way to write each palette, so a file that reads must write back byte for byte.
struct SameBytes {
    void operator()(const PAL::PaletteCoder& coder, const PAL::Palette& read, std::string_view bytes) const {
        if (coder.encode(read) != bytes) __builtin_trap();
    }
};

}  // namespace roundtrip

template <class MakeCoder, class Check = roundtrip::SameCount>
int fuzzCoderRoundTrip(const uint8_t* data, std::size_t size, MakeCoder makeCoder, Check check = {}) {
    const auto coder = makeCoder();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto palette = fuzzDecode(*coder, bytes)) check(*coder, *palette, bytes);
    return 0;
}
