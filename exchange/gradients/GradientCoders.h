#pragma once
// One factory per gradient coder, each defined in its coder's own file.
#include <memory>

#include "exchange/gradients/GradientsCoder.h"

namespace PAL {

std::unique_ptr<GradientsCoder> makeJSONGradientsCoder();
std::unique_ptr<GradientsCoder> makeDCGCoder();
std::unique_ptr<GradientsCoder> makeGIMPGradientCoder();
std::unique_ptr<GradientsCoder> makeCSSGradientCoder();
std::unique_ptr<GradientsCoder> makeAdobeGRDCoder();
std::unique_ptr<GradientsCoder> makePaintShopProGradientCoder();
std::unique_ptr<GradientsCoder> makeColorPaletteTablesCoder();
std::unique_ptr<GradientsCoder> makeGnuplotCoder();
std::unique_ptr<GradientsCoder> makeSVGGradientCoder();
std::unique_ptr<GradientsCoder> makeSwiftGradientCoder();
std::unique_ptr<GradientsCoder> makeSwiftUIGradientCoder();

}  // namespace PAL
