#include "exchange/coders/SVGCoder.h"

#include <cmath>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/XmlTree.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/SwatchLayout.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::shortest;

constexpr double margin = 16;
constexpr double gap = 8;
constexpr double labelHeight = 18;  // an 11-point name under the swatch
constexpr double titleHeight = 28;  // the palette's name, 16 points
constexpr double headingHeight = 24;  // a group's name, 13 points

// Names from any file end up here: bytes that are not UTF-8 are read as Latin-1 so the document stays
// well-formed, and escaping drops the control characters XML cannot hold.
std::string text(std::string_view name) {
    return xml::escaped(textfile::isValidUTF8(name) ? std::string(name) : textfile::latin1ToUTF8(name));
}

std::string fillAttributes(const Color& color) {
    std::string out = "fill=\"" + color.hexString(ColorByteFormat::rgb, true) + "\"";
    const double alpha = color.rgb().af;
    if (alpha < 1) out += " fill-opacity=\"" + shortest(std::round(alpha * 1000) / 1000) + "\"";
    return out;
}

class Sheet {
public:
    explicit Sheet(const SVGCoder& coder) : coder(coder), width(coder.swatchSize.width), height(coder.swatchSize.height) {}

    void title(std::string_view name) {
        body += "  <text x=\"" + shortest(margin) + "\" y=\"" + shortest(y + 18) + "\" font-size=\"16\" font-weight=\"bold\">" +
                text(name) + "</text>\n";
        y += titleHeight;
    }

    void heading(std::string_view name) {
        body += "  <text x=\"" + shortest(margin) + "\" y=\"" + shortest(y + 15) + "\" font-size=\"13\" font-weight=\"bold\">" +
                text(name) + "</text>\n";
        y += headingHeight;
    }

    void row(std::span<const Color> colors) {
        const double cellHeight = height + (coder.showNames ? labelHeight : 0);
        for (std::size_t i = 0; i < colors.size(); ++i) swatch(colors[i], margin + static_cast<double>(i) * (width + gap), cellHeight);
        y += cellHeight + gap;
        hasRows = true;
    }

    // A nested viewport per swatch clips a long name at the swatch's edge; the tooltip keeps it whole.
    void swatch(const Color& color, double x, double cellHeight) {
        const std::string hex = color.hexString(ColorByteFormat::rgb, true);
        body += "  <svg x=\"" + shortest(x) + "\" y=\"" + shortest(y) + "\" width=\"" + shortest(width) + "\" height=\"" +
                shortest(cellHeight) + "\">\n";
        body += "    <title>" + (color.name.empty() ? hex : text(color.name) + " " + hex) + "</title>\n";
        body += "    <rect x=\"0.5\" y=\"0.5\" width=\"" + shortest(width - 1) + "\" height=\"" + shortest(height - 1) +
                "\" rx=\"4\" " + fillAttributes(color) + " stroke=\"#000000\" stroke-opacity=\"0.15\"/>\n";
        if (coder.showNames && !color.name.empty())
            body += "    <text x=\"0\" y=\"" + shortest(height + 13) + "\" font-size=\"11\">" + text(color.name) + "</text>\n";
        body += "  </svg>\n";
    }

    std::string document(std::string_view name, std::size_t columns) const {
        const double count = static_cast<double>(std::max<std::size_t>(columns, 1));
        const double sheetWidth = 2 * margin + count * width + (count - 1) * gap;
        const double sheetHeight = y - (hasRows ? gap : 0) + margin;
        std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" +
                          shortest(sheetWidth) + "\" height=\"" + shortest(sheetHeight) + "\" viewBox=\"0 0 " + shortest(sheetWidth) + " " +
                          shortest(sheetHeight) + "\" font-family=\"sans-serif\">\n";
        if (!name.empty()) out += "  <title>" + text(name) + "</title>\n";
        return out + body + "</svg>\n";
    }

private:
    const SVGCoder& coder;
    double width, height;
    double y = margin;
    bool hasRows = false;
    std::string body;
};

}  // namespace

Palette SVGCoder::decode(BytesParser::BytesReader&) const {
    logError("SVG Coder: decode() not implemented");
    throw CommonError(CommonError::Case::notImplemented);
}

std::string SVGCoder::encode(const Palette& palette) const {
    if (!(swatchSize.width >= 1 && swatchSize.height >= 1 && swatchSize.width <= 1e6 && swatchSize.height <= 1e6))
        throw CommonError(CommonError::Case::cannotCreateImage);
    const SwatchLayout layout = swatchLayout(palette, columns);
    Sheet sheet(*this);
    if (!palette.name.empty()) sheet.title(palette.name);
    for (const SwatchRow& row : layout.rows) {
        if (row.startsList && row.group && !row.group->name.empty()) sheet.heading(row.group->name);
        sheet.row(row.colors);
    }
    return sheet.document(palette.name, layout.columns);
}

std::unique_ptr<PaletteCoder> makeSVGCoder() { return std::make_unique<SVGCoder>(); }

}  // namespace PAL
