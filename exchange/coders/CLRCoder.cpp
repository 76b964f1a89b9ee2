// Apple colour lists (.clr): an NSColorList archived by AppKit, keys in order naming their colours. Read in
// both encodings AppKit has written — the old archiver's typed stream and the keyed archive in a binary
// property list. Written as a keyed archive, which current macOS writes and loads through NSColorList itself
// (a typed stream has been seen refused there, though the colour panel imports it); the typed stream is
// written on request. No groups: a write flattens the palette.
//
// RGB and white components are taken as the numbers they are, whether the list calls them calibrated or
// device: that is what every list-making tool means by them, and it keeps a round trip exact. Only a colour
// that carries its own ICC profile is converted, through the colour engine.
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/ColorList.h"

namespace PAL {

namespace colorlist {

std::optional<Color> componentColor(int64_t kind, const std::vector<double>& c, std::string name) {
    for (double component : c)
        if (!std::isfinite(component)) throw CommonError(CommonError::Case::invalidFormat);
    const auto alpha = [&](size_t count) { return c.size() > count ? c[count] : 1.0; };
    switch (kind) {
        case calibratedRGB:
        case deviceRGB:
            if (c.size() != 3 && c.size() != 4) return std::nullopt;
            return Color::rgb(c[0], c[1], c[2], alpha(3), std::move(name));
        case calibratedWhite:
        case deviceWhite:
            if (c.size() != 1 && c.size() != 2) return std::nullopt;
            return Color::gray(c[0], alpha(1), std::move(name));
        case deviceCMYK:
            if (c.size() != 4 && c.size() != 5) return std::nullopt;
            return Color::cmyk(c[0], c[1], c[2], c[3], alpha(4), std::move(name));
        default: return std::nullopt;
    }
}

std::nullopt_t unsupported(const std::string& what, size_t index) {
    logError(formatLogMessage("PAL.Coder.CLR: Unsupported color (%@) at index %d, skipping...", {what, std::to_string(index)}));
    return std::nullopt;
}

WrittenColor writtenColor(const Color& color) {
    switch (color.colorSpace) {
        case ColorSpace::Gray: return {deviceWhite, {color.gray(), color.alpha}};
        case ColorSpace::CMYK: {
            const auto cmyk = color.cmyk();
            return {deviceCMYK, {cmyk.cf, cmyk.mf, cmyk.yf, cmyk.kf, cmyk.af}};
        }
        case ColorSpace::RGB:
        case ColorSpace::LAB: break;
    }
    const auto rgb = color.rgb();
    return {deviceRGB, {rgb.rf, rgb.gf, rgb.bf, rgb.af}};
}

}  // namespace colorlist

namespace {

// A colour list holds one colour per key, so on a Mac a repeated key would lose colours: an empty name takes
// the colour's hex, and a repeated one a number.
std::vector<Color> withDistinctKeys(std::vector<Color> colors) {
    std::unordered_set<std::string> used;
    std::unordered_map<std::string, int> lastNumber;
    for (Color& color : colors) {
        const std::string base = color.name.empty() ? color.hexString(ColorByteFormat::rgb, true, true) : color.name;
        std::string key = base;
        for (int& number = lastNumber.try_emplace(base, 1).first->second; used.count(key);)
            key = base + " " + std::to_string(++number);
        used.insert(key);
        color.name = std::move(key);
    }
    return colors;
}

class CLRCoder final : public PaletteCoder {
public:
    explicit CLRCoder(CLREncoding written) : PaletteCoder(PaletteFormat::clr), written_(written) {}
    using PaletteCoder::decode;

    // A list of nothing but colours that cannot be represented is refused, rather than read as empty.
    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto raw = reader.readAll();
        const std::string_view bytes(reinterpret_cast<const char*>(raw.data()), raw.size());
        auto list = bytes.starts_with("bplist") ? colorlist::readKeyedArchive(bytes) : colorlist::readTypedstream(bytes);
        if (list.colors.empty() && list.skipped > 0) throw CommonError(CommonError::Case::unsupportedColorspace);
        Palette palette({}, std::move(list.colors));
        palette.format = PaletteFormat::clr;
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = withDistinctKeys(palette.allColors());
        return written_ == CLREncoding::keyedArchive ? colorlist::writeKeyedArchive(colors) : colorlist::writeTypedstream(colors);
    }

private:
    CLREncoding written_;
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCLRCoder(CLREncoding written) { return std::make_unique<CLRCoder>(written); }

}  // namespace PAL
