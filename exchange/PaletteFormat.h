#pragma once
// Every palette and gradient file format the exchange layer knows, in their fixed order. The order
// decides which coder a file is tried with first, so it must not change.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PAL {

enum class PaletteFormat : int {
    acb, acbl, aco, act, androidXML, ase, basicXML, clr, clipStudioPaint, corelPainter,
    corelDraw, scribusXML, corelPalette, csv, dcp, gimp, hexRGBA, image, json, openOffice,
    paintNET, paintShopPro, rgba, rgb, riff, sketch, skp, svg, swift, corelDrawV3,
    clf, swatches, autodeskColorBook, simplePalette, swatchbooker, afpalette, xara, koffice, hpl, skencil,
    vga24bit, vga18bit,
};

struct PaletteFormatInfo {
    PaletteFormat format;
    std::string_view caseName;
    std::string_view displayName;
    std::vector<std::string_view> extensions;  // lowercase, most preferred first
    std::string_view utType;
    bool reads;
    bool writes;
};

// All 42, in case order.
const std::vector<PaletteFormatInfo>& paletteFormats();
const PaletteFormatInfo& info(PaletteFormat format);
std::optional<PaletteFormat> paletteFormatFromCaseName(std::string_view caseName);

enum class GradientsFormat : int {
    json, dcg, gimp, css, adobeGRD, paintShopPro, colorPaletteTables, gnuplot, svg, swiftGen, swiftUIGen,
};

struct GradientsFormatInfo {
    GradientsFormat format;
    std::string_view caseName;
    std::string_view displayName;
    std::vector<std::string_view> extensions;
    bool reads;
    bool writes;
};

// All 11, in case order.
const std::vector<GradientsFormatInfo>& gradientsFormats();
const GradientsFormatInfo& info(GradientsFormat format);
std::optional<GradientsFormat> gradientsFormatFromCaseName(std::string_view caseName);

}  // namespace PAL
