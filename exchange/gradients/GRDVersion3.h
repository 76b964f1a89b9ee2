#pragma once
// The gradient file layout of Photoshop up to 5.5, which Paint Shop Pro also writes (.grd, .jgd,
// .PspGradient): "8BGR", version 3, then each gradient's name, colour stops and opacity stops.
#include <optional>
#include <string_view>
#include <vector>

#include "exchange/gradients/Gradient.h"

namespace PAL {

// The magic and the version word that both Photoshop layouts start with; nothing when the bytes do not
// start with the magic.
std::optional<int> grdVersion(std::string_view bytes);

// Every gradient of a version 3 file (the whole file, magic included). Gradients without colour stops
// are skipped and reported. Throws CommonError invalidFormat when the bytes do not hold the layout, or
// hold no gradient.
std::vector<Gradient> grdVersion3Gradients(std::string_view bytes);

}  // namespace PAL
