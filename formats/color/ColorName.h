#pragma once
// The human name of a colour: the list entry with exactly its hex text, else the nearest one in plain 8-bit
// RGB distance, the earlier entry winning a tie.
#include <optional>
#include <string>
#include <string_view>

#include "formats/color/ColorList.h"

namespace kro::ColorName {

// Components 0…1 in any RGB space; the shipped list. Nothing when the list is empty.
std::optional<std::string> name(double red, double green, double blue);
std::optional<std::string> name(const ColorList& list, double red, double green, double blue);

// Euclidean distance of two hex texts' 8-bit components, truncated to a whole number.
int distance(std::string_view hexA, std::string_view hexB);

}  // namespace kro::ColorName
