#pragma once
// What the readers share to turn a file's own description of a colour ramp into stops: mixing,
// a list that joins segment ends that meet, and a sampler for curves that stops cannot hold exactly
// (curved blends, HSV ramps).
#include <functional>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/gradients/Gradient.h"

namespace PAL {

// Component by component, alpha included; t = 0 gives a, t = 1 gives b.
RGB mixed(const RGB& a, const RGB& b, double t);
bool sameRGBA(const RGB& a, const RGB& b, double tolerance = 1e-9);
Color stopColor(const RGB& rgba);
// The colour seen when it is laid over white: formats without alpha store this.
RGB overWhite(const RGB& rgba);

class StopList {
public:
    // A stop equal in position and colour to the last one is not added again: where one segment ends
    // and the next begins with the same colour, one stop remains; a different colour makes a hard edge.
    void add(double position, const RGB& rgba);
    // The curve from `from` to `to`, `curve` taking the fraction 0...1 of the way. Evaluated at k
    // evenly spaced points, k doubling from 8 until the straight pieces stay within 1/255 of the curve
    // in every component (at most 256); points that lie on the line through their neighbours are dropped.
    void addSampled(double from, double to, const std::function<RGB(double)>& curve);

    bool empty() const { return stops_.empty(); }
    std::vector<GradientStop> take() { return std::move(stops_); }

private:
    std::vector<GradientStop> stops_;
};

}  // namespace PAL
