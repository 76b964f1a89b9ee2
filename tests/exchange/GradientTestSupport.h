#pragma once
// Helpers for the gradient coder tests: gradients written briefly, stops compared with a tolerance,
// and decode/encode through a format's coder.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ExchangeTestSupport.h"
#include "exchange/gradients/GradientSampling.h"
#include "exchange/gradients/GradientsCoder.h"

namespace gradienttest {

// "#rrggbb" with an alpha.
inline PAL::Color rgba(std::string_view hex, double alpha = 1) { return PAL::Color::hex(hex).withAlpha(alpha); }

struct ExpectedStop {
    double position;
    std::string hex;  // "rrggbb", lower case
    double alpha = 1;
};

inline PAL::Gradient gradient(std::string name, const std::vector<ExpectedStop>& stops) {
    PAL::Gradient made{std::move(name), {}};
    for (const auto& stop : stops) made.stops.push_back({stop.position, rgba(stop.hex, stop.alpha)});
    return made;
}

inline PAL::Gradients gradients(std::vector<PAL::Gradient> list) { return PAL::Gradients{std::move(list), std::nullopt}; }

// The three-stop example of the format notes: dark red, orange at three quarters, pale yellow at half.
inline PAL::Gradient ember() { return gradient("Ember", {{0, "330000", 1}, {0.5, "ff6600", 0.75}, {1, "ffee88", 0.5}}); }

// Positions within 1e-6; components and alpha within `tolerance` (1/255 suits formats that store bytes).
inline void expectStops(const PAL::Gradient& actual, const std::vector<ExpectedStop>& expected, double tolerance = 1e-6) {
    ASSERT_EQ(actual.stops.size(), expected.size()) << actual.name;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto& stop = actual.stops[i];
        const PAL::RGB want = rgba(expected[i].hex, expected[i].alpha).rgb();
        const PAL::RGB got = stop.color.rgb();
        EXPECT_NEAR(stop.position, expected[i].position, 1e-6) << "stop " << i;
        EXPECT_NEAR(got.rf, want.rf, tolerance) << "stop " << i;
        EXPECT_NEAR(got.gf, want.gf, tolerance) << "stop " << i;
        EXPECT_NEAR(got.bf, want.bf, tolerance) << "stop " << i;
        EXPECT_NEAR(got.af, expected[i].alpha, tolerance) << "stop " << i;
    }
}

// The same stops (positions, colours and alpha) in two gradients.
inline void expectSameStops(const PAL::Gradient& actual, const PAL::Gradient& expected, double tolerance = 1e-6) {
    ASSERT_EQ(actual.stops.size(), expected.stops.size()) << actual.name;
    for (std::size_t i = 0; i < expected.stops.size(); ++i) {
        const PAL::RGB a = actual.stops[i].color.rgb(), e = expected.stops[i].color.rgb();
        EXPECT_NEAR(actual.stops[i].position, expected.stops[i].position, 1e-6) << actual.name << " stop " << i;
        EXPECT_NEAR(a.rf, e.rf, tolerance) << actual.name << " stop " << i;
        EXPECT_NEAR(a.gf, e.gf, tolerance) << actual.name << " stop " << i;
        EXPECT_NEAR(a.bf, e.bf, tolerance) << actual.name << " stop " << i;
        EXPECT_NEAR(a.af, e.af, tolerance) << actual.name << " stop " << i;
    }
}

inline PAL::Gradients decode(PAL::GradientsFormat format, std::string_view bytes) { return PAL::coder(format)->decode(bytes); }
inline std::string encode(PAL::GradientsFormat format, const PAL::Gradients& list) { return PAL::coder(format)->encode(list); }

}  // namespace gradienttest
