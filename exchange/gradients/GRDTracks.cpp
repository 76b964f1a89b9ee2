#include "exchange/gradients/GRDTracks.h"

#include <algorithm>
#include <cmath>

#include "exchange/PalErrors.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

namespace {

struct Point {
    double position;
    RGB value;
};

class Track {
public:
    Track(std::vector<TrackStop> stops, MidpointOwner owner) {
        std::stable_sort(stops.begin(), stops.end(), [](const auto& a, const auto& b) { return a.location < b.location; });
        for (std::size_t i = 0; i < stops.size(); ++i) {
            if (i > 0 && stops[i].location > stops[i - 1].location) {
                const auto& from = stops[i - 1];
                const double midpoint = owner == MidpointOwner::endingStop ? stops[i].midpoint : from.midpoint;
                if (std::fabs(midpoint - 0.5) > 1e-6)
                    points_.push_back(
                        {from.location + (stops[i].location - from.location) * midpoint, mixed(from.value, stops[i].value, 0.5)});
            }
            points_.push_back({stops[i].location, stops[i].value});
        }
    }

    const std::vector<Point>& points() const { return points_; }

    // The value coming from the left of `position`: the first of the points on it.
    RGB before(double position) const {
        const auto at =
            std::lower_bound(points_.begin(), points_.end(), position, [](const Point& p, double x) { return p.position < x; });
        if (at == points_.end()) return points_.back().value;
        if (at == points_.begin() || at->position == position) return at->value;
        return between(*(at - 1), *at, position);
    }

    // The value going on to the right of `position`: the last of the points on it.
    RGB after(double position) const {
        const auto past =
            std::upper_bound(points_.begin(), points_.end(), position, [](double x, const Point& p) { return x < p.position; });
        if (past == points_.begin()) return points_.front().value;
        if (past == points_.end() || (past - 1)->position == position) return (past - 1)->value;
        return between(*(past - 1), *past, position);
    }

private:
    static RGB between(const Point& a, const Point& b, double position) {
        return mixed(a.value, b.value, (position - a.position) / (b.position - a.position));
    }

    std::vector<Point> points_;
};

RGB combined(const RGB& color, const RGB& opacity) { return {color.rf, color.gf, color.bf, opacity.af}; }

struct FlatStop {
    double position;
    RGB rgba;
    bool hardEdge;
};

bool liesBetween(const FlatStop& before, const FlatStop& middle, const FlatStop& after) {
    if (after.position == before.position) return false;
    const double t = (middle.position - before.position) / (after.position - before.position);
    return sameRGBA(mixed(before.rgba, after.rgba, t), middle.rgba, 1e-6);
}

}  // namespace

std::vector<GradientStop> flattenedTracks(std::vector<TrackStop> colors, std::vector<TrackStop> opacities, MidpointOwner owner) {
    if (colors.empty()) throw CommonError(CommonError::Case::notEnoughColorsToGenerateGradient);
    if (opacities.empty()) opacities.push_back({0, 0.5, RGB{0, 0, 0, 1}});
    const Track color(std::move(colors), owner), opacity(std::move(opacities), owner);

    std::vector<double> positions;
    for (const Track* track : {&color, &opacity})
        for (const auto& point : track->points()) positions.push_back(point.position);
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());

    std::vector<FlatStop> flat;
    for (double position : positions) {
        const RGB before = combined(color.before(position), opacity.before(position));
        const RGB after = combined(color.after(position), opacity.after(position));
        const bool hardEdge = !sameRGBA(before, after);
        flat.push_back({position, before, hardEdge});
        if (hardEdge) flat.push_back({position, after, true});
    }

    std::vector<GradientStop> stops;
    const FlatStop* kept = nullptr;
    for (std::size_t i = 0; i < flat.size(); ++i) {
        const bool inner = kept && i + 1 < flat.size() && !flat[i].hardEdge;
        if (inner && liesBetween(*kept, flat[i], flat[i + 1])) continue;
        stops.push_back({flat[i].position, stopColor(flat[i].rgba)});
        kept = &flat[i];
    }
    return stops;
}

}  // namespace PAL
