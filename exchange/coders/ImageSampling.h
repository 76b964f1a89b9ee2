#pragma once
// The colours of a picture as a palette: similar colours merged, the most common kept.
#include <cstddef>
#include <vector>

#include "exchange/coders/ImageCoder.h"
#include "exchange/coders/RasterImage.h"

namespace PAL {

// At most `maximumCount` colours (held to 1024), most common first; colours of equal area in the order
// they first appear, reading rows from the top, so a swatch image gives its swatches back in order.
// `accuracy` is the coder's (held to 0...1). Fully transparent pixels carry no colour and are skipped.
// A flat colour is given exactly; a colour made of shades is the average of its most common shades.
std::vector<ImageCoder::Pixel> sampledColors(const RasterImage& image, double accuracy, std::size_t maximumCount);

}  // namespace PAL
