#include "exchange/gradients/Gradient.h"

#include <algorithm>

#include "exchange/PalErrors.h"
#include "exchange/gradients/GradientSampling.h"

namespace PAL {

void Gradient::normalize() {
    for (auto& stop : stops) stop.position = std::clamp(stop.position, 0.0, 1.0);
    std::stable_sort(stops.begin(), stops.end(), [](const auto& a, const auto& b) { return a.position < b.position; });
    std::vector<GradientStop> kept;
    kept.reserve(stops.size());
    for (std::size_t i = 0; i < stops.size(); ++i) {
        const bool samePositionBefore = i > 0 && stops[i - 1].position == stops[i].position;
        const bool samePositionAfter = i + 1 < stops.size() && stops[i + 1].position == stops[i].position;
        if (!(samePositionBefore && samePositionAfter)) kept.push_back(stops[i]);
    }
    stops = std::move(kept);
}

RGB Gradient::colorAt(double t) const {
    if (stops.empty()) throw CommonError(CommonError::Case::notEnoughColorsToGenerateGradient);
    // The first stop past t; at a hard edge on t that is past both, so the later colour wins.
    const auto after =
        std::upper_bound(stops.begin(), stops.end(), t, [](double value, const auto& stop) { return value < stop.position; });
    if (after == stops.begin()) return after->color.rgb();
    const auto& before = *(after - 1);
    if (after == stops.end() || before.position == t) return before.color.rgb();
    return mixed(before.color.rgb(), after->color.rgb(), (t - before.position) / (after->position - before.position));
}

Gradients singleGradient(GradientsFormat format, Gradient gradient) {
    gradient.normalize();
    Gradients gradients;
    gradients.format = format;
    gradients.gradients.push_back(std::move(gradient));
    return gradients;
}

const std::vector<Gradient>& writableGradients(const Gradients& gradients) {
    if (gradients.gradients.empty()) throw CommonError(CommonError::Case::notEnoughColorsToGenerateGradient);
    return gradients.gradients;
}

const Gradient& onlyGradient(const Gradients& gradients) {
    const auto& list = writableGradients(gradients);
    if (list.size() > 1)
        throw CommonError(CommonError::Case::invalidFormat,
                          "the format holds one gradient per file, and there are " + std::to_string(list.size()));
    return list.front();
}

std::vector<GradientStop> writableStops(const Gradient& gradient) {
    Gradient copy = gradient;
    copy.normalize();
    if (copy.stops.empty()) throw CommonError(CommonError::Case::notEnoughColorsToGenerateGradient);
    return std::move(copy.stops);
}

std::vector<GradientStop> spanningStops(const Gradient& gradient) {
    auto stops = writableStops(gradient);
    if (stops.front().position > 0) stops.insert(stops.begin(), GradientStop{0, stops.front().color});
    if (stops.back().position < 1) stops.push_back(GradientStop{1, stops.back().color});
    return stops;
}

}  // namespace PAL
