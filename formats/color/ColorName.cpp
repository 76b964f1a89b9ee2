#include "formats/color/ColorName.h"

#include <cmath>

#include "formats/color/ColorConversions.h"

namespace kro::ColorName {
namespace {

int squaredDistance(const std::array<int, 3>& a, const std::array<int, 3>& b) {
    int sum = 0;
    for (size_t i = 0; i < 3; ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

int truncatedRoot(int squared) { return static_cast<int>(std::sqrt(static_cast<double>(squared))); }

}  // namespace

std::optional<std::string> name(double red, double green, double blue) {
    return name(ColorList::shared(), red, green, blue);
}

std::optional<std::string> name(const ColorList& list, double red, double green, double blue) {
    const auto& names = list.names();
    if (names.empty()) return std::nullopt;
    std::string key = hexText(red, green, blue);
    // An exact match is returned the moment the walk reaches it, so the first one wins over any distance.
    if (auto index = list.exactMatch(key)) return names[*index][1];

    // The walk keeps the first entry of the smallest truncated distance. A truncated distance is below the
    // best one exactly when the squared distance is below the best one squared, so no root is taken per entry.
    auto keyComponents = scanHexPairs(key);
    const auto& walked = list.walkComponents();
    std::size_t bestIndex = 0;
    int bestDistance = -1;
    long bestBound = 0;
    for (std::size_t i = 0; i < walked.size(); ++i) {
        int squared = squaredDistance(keyComponents, walked[i]);
        if (bestDistance < 0 || squared < bestBound) {
            bestIndex = i;
            bestDistance = truncatedRoot(squared);
            bestBound = static_cast<long>(bestDistance) * bestDistance;
        }
    }
    // When the very first entry ends the walk, the search still answers with its name if it has one.
    if (names[bestIndex].size() < 2) return std::nullopt;
    return names[bestIndex][1];
}

int distance(std::string_view hexA, std::string_view hexB) {
    return truncatedRoot(squaredDistance(scanHexPairs(hexA), scanHexPairs(hexB)));
}

}  // namespace kro::ColorName
