#pragma once
// The body every gradient decoder's fuzz target shares: any bytes must be read or refused without a
// crash, hang or leak; what is read must hold the model's promises (at least one stop per gradient,
// positions in 0...1 and in order); and it must write and read back with as many gradients, through the
// format itself when it writes, else through our own binary form.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exchange/gradients/GradientsCoder.h"

inline void checkGradientPromises(const PAL::Gradients& gradients) {
    if (gradients.gradients.empty()) __builtin_trap();
    for (const auto& gradient : gradients.gradients) {
        if (gradient.stops.empty()) __builtin_trap();
        double previous = 0;
        for (const auto& stop : gradient.stops) {
            if (!(stop.position >= previous && stop.position <= 1)) __builtin_trap();
            previous = stop.position;
            (void)stop.color.rgb();
        }
    }
}

inline int fuzzGradientRoundTrip(const uint8_t* data, size_t size, PAL::GradientsFormat format) {
    const auto coder = PAL::coder(format);
    PAL::Gradients gradients;
    try {
        gradients = coder->decode(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const std::exception&) {
        return 0;  // refused: fine, as long as it neither crashed nor hung
    }
    checkGradientPromises(gradients);
    const auto writer = coder->writes() ? PAL::coder(format) : PAL::coder(PAL::GradientsFormat::dcg);
    const PAL::Gradients again = writer->decode(writer->encode(gradients));
    checkGradientPromises(again);
    if (again.gradients.size() != gradients.gradients.size()) __builtin_trap();
    return 0;
}
