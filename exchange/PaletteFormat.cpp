// The tables of palette and gradient formats. Their order is the order coders are tried in.
#include "exchange/PaletteFormat.h"

namespace PAL {

const std::vector<PaletteFormatInfo>& paletteFormats() {
    using F = PaletteFormat;
    static const std::vector<PaletteFormatInfo> formats = {
        {F::acb, "acb", "Adobe Color Book", {"acb"}, "com.adobe.acb", true, false},
        {F::acbl, "acbl", "Adobe Color Book (Legacy)", {"acbl"}, "com.adobe.acbl", true, false},
        {F::aco, "aco", "Adobe Photoshop Swatch", {"aco"}, "com.adobe.aco", true, true},
        {F::act, "act", "Adobe Color Table", {"act"}, "com.adobe.act", true, true},
        {F::androidXML, "androidXML", "Android Colors XML", {"xml"}, "public.tintlab.colorpalette.palette.android.xml", true, true},
        {F::ase, "ase", "Adobe Swatch Exchange", {"ase"}, "com.adobe.ase", true, true},
        {F::basicXML, "basicXML", "Basic XML Palette", {"xml"}, "public.tintlab.colorpalette.palette.basicxml", true, true},
        {F::clr, "clr", "Apple NSColorList", {"clr"}, "com.apple.color-file", true, true},
        {F::clipStudioPaint, "clipStudioPaint", "Clip Studio Paint", {"cls"}, "public.tintlab.colorpalette.palette.clipstudiopaint", true, true},
        {F::corelPainter, "corelPainter", "Corel Painter Swatch", {"txt"}, "public.tintlab.colorpalette.palette.corel.painter", true, true},
        {F::corelDraw, "corelDraw", "CorelDraw XML Palette", {"xml"}, "public.tintlab.colorpalette.palette.coreldraw.xml", true, true},
        {F::scribusXML, "scribusXML", "Scribus XML Palette", {"xml"}, "public.tintlab.colorpalette.palette.scribus.xml", true, true},
        {F::corelPalette, "corelPalette", "Corel Palette", {"cpl"}, "public.tintlab.colorpalette.palette.corel.cpl", true, false},
        {F::csv, "csv", "CSV", {"csv"}, "public.tintlab.colorpalette.palette.csv", true, true},
        {F::dcp, "dcp", "TintCodable Binary Palette", {"dcp"}, "public.tintlab.colorpalette.palette.dcp", true, true},
        {F::gimp, "gimp", "GIMP Palette", {"gpl"}, "public.tintlab.colorpalette.palette.gimp.gpl", true, true},
        {F::hexRGBA, "hexRGBA", "Hex RGBA", {"hex"}, "public.tintlab.colorpalette.palette.hex", true, true},
        {F::image, "image", "Image", {"png", "jpeg", "jpg", "gif"}, "public.image", true, true},
        {F::json, "json", "TintCodable JSON Palette", {"jsoncolorpalette"}, "public.tintlab.colorpalette.palette.json", true, true},
        {F::openOffice, "openOffice", "OpenOffice Palette", {"soc"}, "public.tintlab.colorpalette.palette.openoffice", true, true},
        {F::paintNET, "paintNET", "Paint.NET Palette", {"txt"}, "public.tintlab.colorpalette.palette.paint.net", true, true},
        {F::paintShopPro, "paintShopPro", "Paint Shop Pro Palette", {"psppalette", "pal"}, "public.tintlab.colorpalette.palette.corel.pal", true, true},
        {F::rgba, "rgba", "RGBA text", {"rgba", "txt"}, "public.tintlab.colorpalette.palette.rgba", true, true},
        {F::rgb, "rgb", "RGB text", {"rgb", "rgb255", "txt"}, "public.tintlab.colorpalette.palette.rgb", true, true},
        {F::riff, "riff", "Microsoft RIFF", {"pal"}, "public.tintlab.colorpalette.palette.microsoft.riff", true, true},
        {F::sketch, "sketch", "Sketch Palette", {"sketchpalette"}, "com.bohemiancoding.sketch.palette", true, true},
        {F::skp, "skp", "SK1 Color Palette", {"skp"}, "public.tintlab.colorpalette.palette.sk1", true, true},
        {F::svg, "svg", "SVG", {"svg"}, "public.svg-image", false, true},
        {F::swift, "swift", "Swift Palette Code Generator", {"swift"}, "public.swift-source", false, true},
        {F::corelDrawV3, "corelDrawV3", "Corel Draw V3", {"pal"}, "public.tintlab.colorpalette.palette.coreldrawV3.pal", true, true},
        {F::clf, "clf", "CLF Lab Colors", {"clf"}, "public.tintlab.colorpalette.palette.clf", true, true},
        {F::swatches, "swatches", "Procreate Swatches", {"swatches"}, "public.tintlab.colorpalette.palette.procreate.swatches", true, true},
        {F::autodeskColorBook, "autodeskColorBook", "Autodesk Color Book", {"acb"}, "public.tintlab.colorpalette.palette.autodesk.colorbook", true, true},
        {F::simplePalette, "simplePalette", "Simple Color Palette", {"color-palette"}, "com.swatchkit.simple-color-palette", true, true},
        {F::swatchbooker, "swatchbooker", "SwatchBooker Palette", {"sbz"}, "public.tintlab.colorpalette.palette.swatchbooker", true, true},
        {F::afpalette, "afpalette", "Affinity Designer Palette", {"afpalette"}, "public.tintlab.colorpalette.palette.afpalette", true, false},
        {F::xara, "xara", "Xara Palette", {"jcw"}, "public.tintlab.colorpalette.palette.xara.palette", true, true},
        {F::koffice, "koffice", "KDE Palette", {"colors"}, "public.tintlab.colorpalette.palette.koffice", true, true},
        {F::hpl, "hpl", "Homesite Palette", {"hpl"}, "public.tintlab.colorpalette.palette.homesite", true, true},
        {F::skencil, "skencil", "Skencil Palette", {"spl"}, "public.tintlab.colorpalette.palette.skencil", true, true},
        {F::vga24bit, "vga24bit", "VGA 24-bit RGB Palette", {"pal"}, "public.tintlab.colorpalette.palette.vgargb.24bit", true, true},
        {F::vga18bit, "vga18bit", "VGA 18-bit RGB Palette", {"pal"}, "public.tintlab.colorpalette.palette.vgargb.18bit", true, true},
    };
    return formats;
}

const PaletteFormatInfo& info(PaletteFormat format) { return paletteFormats().at(static_cast<std::size_t>(format)); }

std::optional<PaletteFormat> paletteFormatFromCaseName(std::string_view caseName) {
    for (const auto& entry : paletteFormats())
        if (entry.caseName == caseName) return entry.format;
    return std::nullopt;
}

const std::vector<GradientsFormatInfo>& gradientsFormats() {
    using G = GradientsFormat;
    static const std::vector<GradientsFormatInfo> formats = {
        {G::json, "json", "JSON Gradients", {"jsongradients"}, true, true},
        {G::dcg, "dcg", "TintCodable Binary Gradients", {"dcg"}, true, true},
        {G::gimp, "gimp", "GIMP Gradient", {"ggr"}, true, true},
        {G::css, "css", "CSS Gradients", {"css"}, false, true},
        {G::adobeGRD, "adobeGRD", "Adobe Photoshop Gradients", {"grd"}, true, false},
        {G::paintShopPro, "paintShopPro", "Paint Shop Pro Gradients", {"pspgradient", "jgd"}, true, false},
        {G::colorPaletteTables, "colorPaletteTables", "Color Palette Tables", {"cpt"}, true, true},
        {G::gnuplot, "gnuplot", "gnuplot Palette", {"gpf"}, true, true},
        {G::svg, "svg", "SVG Gradients", {"svg"}, true, true},
        {G::swiftGen, "swiftGen", "Swift Gradient Code Generator", {"swift"}, false, true},
        {G::swiftUIGen, "swiftUIGen", "SwiftUI Gradient Code Generator", {"swift"}, false, true},
    };
    return formats;
}

const GradientsFormatInfo& info(GradientsFormat format) { return gradientsFormats().at(static_cast<std::size_t>(format)); }

std::optional<GradientsFormat> gradientsFormatFromCaseName(std::string_view caseName) {
    for (const auto& entry : gradientsFormats())
        if (entry.caseName == caseName) return entry.format;
    return std::nullopt;
}

}  // namespace PAL
