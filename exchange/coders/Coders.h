#pragma once
// One factory per coder, each defined in its coder's own file.
#include <memory>

#include "exchange/PaletteCoder.h"

namespace PAL {

std::unique_ptr<PaletteCoder> makeACBCoder();
std::unique_ptr<PaletteCoder> makeACBLCoder();
std::unique_ptr<PaletteCoder> makeACOCoder();
std::unique_ptr<PaletteCoder> makeACTCoder();
std::unique_ptr<PaletteCoder> makeASECoder();
// Colour lists are read in either encoding and written as a keyed archive unless the typed stream is asked for.
enum class CLREncoding { keyedArchive, typedstream };
std::unique_ptr<PaletteCoder> makeCLRCoder(CLREncoding written = CLREncoding::keyedArchive);
std::unique_ptr<PaletteCoder> makeRIFFCoder();
std::unique_ptr<PaletteCoder> makeVGA24BitCoder();
std::unique_ptr<PaletteCoder> makeVGA18BitCoder();
std::unique_ptr<PaletteCoder> makeClipStudioPaintCoder();
std::unique_ptr<PaletteCoder> makeCorelPaletteCoder();
std::unique_ptr<PaletteCoder> makeXaraCoder();
std::unique_ptr<PaletteCoder> makeAffinityPaletteCoder();
std::unique_ptr<PaletteCoder> makeDCPCoder();
std::unique_ptr<PaletteCoder> makeCLFCoder();

std::unique_ptr<PaletteCoder> makeGIMPCoder();
std::unique_ptr<PaletteCoder> makeJSONCoder();
std::unique_ptr<PaletteCoder> makePaintShopProCoder();
std::unique_ptr<PaletteCoder> makePaintNETCoder();
std::unique_ptr<PaletteCoder> makeCorelPainterCoder();
std::unique_ptr<PaletteCoder> makeCorelDrawV3Coder();
std::unique_ptr<PaletteCoder> makeHomeSiteCoder();
std::unique_ptr<PaletteCoder> makeSkencilCoder();

std::unique_ptr<PaletteCoder> makeSwatchesCoder();
std::unique_ptr<PaletteCoder> makeSwatchBookerCoder();
std::unique_ptr<PaletteCoder> makeSKPCoder();
std::unique_ptr<PaletteCoder> makeKDEPaletteCoder();
std::unique_ptr<PaletteCoder> makeHexRGBACoder();
std::unique_ptr<PaletteCoder> makeRGBTextCoder();
std::unique_ptr<PaletteCoder> makeRGBATextCoder();
std::unique_ptr<PaletteCoder> makeCSVCoder();
// RGB text in 0...255 integers: format() is rgb, but it has a name and type identifier of its own.
std::unique_ptr<PaletteCoder> makeRGB255Coder();
inline constexpr std::string_view rgb255UTType = "public.tintlab.colorpalette.palette.rgb255";

std::unique_ptr<PaletteCoder> makeImageCoder();
std::unique_ptr<PaletteCoder> makeSVGCoder();
std::unique_ptr<PaletteCoder> makeSwiftCoder();

std::unique_ptr<PaletteCoder> makeAndroidXMLCoder();
std::unique_ptr<PaletteCoder> makeBasicXMLCoder();
std::unique_ptr<PaletteCoder> makeCorelDrawCoder();
std::unique_ptr<PaletteCoder> makeScribusXMLCoder();
std::unique_ptr<PaletteCoder> makeOpenOfficeCoder();
std::unique_ptr<PaletteCoder> makeAutodeskColorBookCoder();
std::unique_ptr<PaletteCoder> makeSketchCoder();
std::unique_ptr<PaletteCoder> makeSimplePaletteCoder();

}  // namespace PAL
