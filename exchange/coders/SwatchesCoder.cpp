// Procreate's palettes (.swatches): a zip archive holding "Swatches.json". Each swatch is an HSB colour
// over sRGB, as fractions, in one of the palette's 30 slots (three rows of ten); an empty slot is null.
// No colour names, no groups, and the swatches are always opaque.
#include <algorithm>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/Zip.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

constexpr std::string_view documentName = "Swatches.json";
constexpr std::size_t slotCount = 30;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

double fraction(const kro::Json& swatch, const char* key) {
    const auto found = swatch.find(key);
    if (found == swatch.end() || !found->is_number()) refuse();
    return std::clamp(found->get<double>(), 0.0, 1.0);
}

// Hue, saturation and brightness are always present and say the colour. Procreate 5's "components"
// repeat it in whichever model the swatch was picked in, which the file does not reliably name, so
// they are not read; "alpha" is 1 in every file Procreate writes.
Color swatchColor(const kro::Json& swatch) {
    if (!swatch.is_object()) refuse();
    return Color::hsb(fraction(swatch, "hue"), fraction(swatch, "saturation"), fraction(swatch, "brightness"));
}

// One swatch on one line, keys in the order Procreate writes them.
std::string swatchText(const Color& color) {
    const HSB hsb = color.hsb();
    return "{ \"hue\" : " + textfile::shortest(hsb.hf) + ", \"saturation\" : " + textfile::shortest(hsb.sf) +
           ", \"brightness\" : " + textfile::shortest(hsb.bf) + ", \"alpha\" : 1, \"colorSpace\" : 0 }";
}

class SwatchesCoder final : public PaletteCoder {
public:
    SwatchesCoder() : PaletteCoder(PaletteFormat::swatches) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string document = zip::readDocument(reader, documentName);
        const auto json = kro::Json::parse(document, nullptr, false);
        if (json.is_discarded()) refuse();
        // Procreate 4 wrote an array holding the palette; later versions write the palette itself.
        const kro::Json& root = json.is_array() && !json.empty() ? json.front() : json;
        if (!root.is_object()) refuse();
        const auto swatches = root.find("swatches");
        if (swatches == root.end() || !swatches->is_array()) refuse();

        Palette palette;
        if (const auto name = root.find("name"); name != root.end() && name->is_string()) palette.name = name->get<std::string>();
        for (const auto& swatch : *swatches)
            if (!swatch.is_null()) palette.colors.push_back(swatchColor(swatch));
        palette.format = PaletteFormat::swatches;
        return palette;
    }

    // Every slot is listed, as Procreate's own exports do. A palette with more colours than slots keeps
    // its first 30: a colour's slot is its place in the palette, and Procreate has no 31st.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.size() > slotCount)
            logInfo(formatLogMessage("Procreate Swatches: a palette holds %d colors, %d were left out",
                                     {std::to_string(slotCount), std::to_string(colors.size() - slotCount)}));
        const auto handler = kro::Json::error_handler_t::replace;
        std::string json = "{\n  \"name\" : " + kro::Json(palette.name).dump(-1, ' ', false, handler) + ",\n  \"swatches\" : [\n";
        for (std::size_t slot = 0; slot < slotCount; ++slot) {
            json += "    " + (slot < colors.size() ? swatchText(colors[slot]) : "null");
            json += slot + 1 < slotCount ? ",\n" : "\n";
        }
        json += "  ]\n}";
        return zip::write({{std::string(documentName), json}});
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSwatchesCoder() { return std::make_unique<SwatchesCoder>(); }

}  // namespace PAL
