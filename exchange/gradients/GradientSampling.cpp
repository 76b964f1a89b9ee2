#include "exchange/gradients/GradientSampling.h"

#include <algorithm>
#include <cmath>

namespace PAL {

namespace {

double largestDifference(const RGB& a, const RGB& b) {
    return std::max({std::fabs(a.rf - b.rf), std::fabs(a.gf - b.gf), std::fabs(a.bf - b.bf), std::fabs(a.af - b.af)});
}

struct Sample {
    double fraction;
    RGB rgba;
};

bool isOnLine(const Sample& before, const Sample& middle, const Sample& after) {
    const double t = (middle.fraction - before.fraction) / (after.fraction - before.fraction);
    return largestDifference(mixed(before.rgba, after.rgba, t), middle.rgba) <= 1e-6;
}

std::vector<Sample> samples(const std::function<RGB(double)>& curve) {
    constexpr double tolerance = 1.0 / 255;
    for (int count = 8;; count *= 2) {
        std::vector<Sample> points;
        for (int i = 0; i <= count; ++i) {
            const double fraction = static_cast<double>(i) / count;
            points.push_back({fraction, curve(fraction)});
        }
        bool closeEnough = true;
        for (int i = 0; i < count && closeEnough; ++i) {
            const RGB middle = curve((points[i].fraction + points[i + 1].fraction) / 2);
            closeEnough = largestDifference(mixed(points[i].rgba, points[i + 1].rgba, 0.5), middle) <= tolerance;
        }
        if (closeEnough || count >= 256) return points;
    }
}

}  // namespace

RGB mixed(const RGB& a, const RGB& b, double t) {
    return {a.rf + (b.rf - a.rf) * t, a.gf + (b.gf - a.gf) * t, a.bf + (b.bf - a.bf) * t, a.af + (b.af - a.af) * t};
}

bool sameRGBA(const RGB& a, const RGB& b, double tolerance) { return largestDifference(a, b) <= tolerance; }

Color stopColor(const RGB& rgba) { return Color::rgb(rgba.rf, rgba.gf, rgba.bf, rgba.af); }

RGB overWhite(const RGB& rgba) {
    const auto over = [&](double component) { return component * rgba.af + (1 - rgba.af); };
    return {over(rgba.rf), over(rgba.gf), over(rgba.bf), 1};
}

void StopList::add(double position, const RGB& rgba) {
    if (!stops_.empty() && stops_.back().position == position && sameRGBA(stops_.back().color.rgb(), rgba)) return;
    stops_.push_back({position, stopColor(rgba)});
}

void StopList::addSampled(double from, double to, const std::function<RGB(double)>& curve) {
    const auto points = samples(curve);
    std::vector<Sample> kept = {points.front()};
    for (std::size_t i = 1; i + 1 < points.size(); ++i)
        if (!isOnLine(kept.back(), points[i], points[i + 1])) kept.push_back(points[i]);
    kept.push_back(points.back());
    for (const auto& point : kept) add(from + (to - from) * point.fraction, point.rgba);
}

}  // namespace PAL
