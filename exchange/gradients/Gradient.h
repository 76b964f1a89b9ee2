#pragma once
// A gradient as the exchange layer carries it: an ordered list of stops, each a position in 0...1 and
// a colour with its alpha, plus an optional name. Between two stops the colour is a straight mix of the
// sRGB-encoded components and the straight alpha; before the first stop and after the last the end
// colours hold. Two stops at one position are a hard edge. A file may hold several gradients.
#include <optional>
#include <string>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/PaletteFormat.h"

namespace PAL {

struct GradientStop {
    double position = 0;
    Color color;
};

struct Gradient {
    std::string name;
    std::vector<GradientStop> stops;

    // The form every reader leaves a gradient in: positions clamped to 0...1, stops sorted by position
    // keeping the order of equal positions, and of three or more stops at one position only the first
    // and the last (the only ones that can be seen).
    void normalize();
    // The colour at `t` of normalised stops, as sRGB components and alpha; at a hard edge the later
    // colour. Throws CommonError notEnoughColorsToGenerateGradient when there is no stop.
    RGB colorAt(double t) const;
};

struct Gradients {
    std::vector<Gradient> gradients;
    std::optional<GradientsFormat> format;  // set by every decoder
};

// What a reader of a format that holds one gradient returns: `gradient` normalised, tagged with the format.
Gradients singleGradient(GradientsFormat format, Gradient gradient);
// The gradients a writer writes. Throws CommonError notEnoughColorsToGenerateGradient when there is none.
const std::vector<Gradient>& writableGradients(const Gradients& gradients);
// The one gradient of a file for formats that hold one. Throws CommonError notEnoughColorsToGenerateGradient
// when there is none, and invalidFormat carrying the reason when there are more.
const Gradient& onlyGradient(const Gradients& gradients);
// Stops that a writer can rely on: normalised, at least one. Throws CommonError
// notEnoughColorsToGenerateGradient for a gradient without stops.
std::vector<GradientStop> writableStops(const Gradient& gradient);
// The same, with copies of the end colours added at 0 and 1 where the stops stop short, for formats
// whose stops must span the whole range.
std::vector<GradientStop> spanningStops(const Gradient& gradient);

}  // namespace PAL
