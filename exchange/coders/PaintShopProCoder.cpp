// Paint Shop Pro palettes (JASC-PAL; .pal, and .PspPalette from Paint Shop Pro 8 on): a three-line
// header, then one "R G B" line per colour. Reading takes any line ending, blanks of any width and
// Aseprite's fourth (alpha) value, and trusts the colour lines over the stated count. Writing is byte for
// byte what Paint Shop Pro writes, which is also the only layout GIMP's reader takes.
#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/ChannelBytes.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::trimmed;

constexpr std::string_view magic = "JASC-PAL";
constexpr std::string_view version = "0100";
// Paint Shop Pro's own limit, and the one the strictest readers (gbagfx) hold to.
constexpr std::size_t mostColors = 256;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

class PaintShopProCoder final : public PaletteCoder {
public:
    PaintShopProCoder() : PaletteCoder(PaletteFormat::paintShopPro) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::fromBytes(textfile::remainingBytes(reader));
        const auto lines = textfile::splitLines(text);
        if (lines.size() < 3 || trimmed(lines[0]) != magic) refuse();
        if (trimmed(lines[1]) != version)
            logInfo(formatLogMessage("PAL.Coder.PaintShopPro: Unknown version %@, reading as 0100", {std::string(trimmed(lines[1]))}));
        const auto count = textfile::integer(trimmed(lines[2]));
        if (!count || *count < 0) refuse();

        Palette palette;
        palette.format = PaletteFormat::paintShopPro;
        palette.colors.reserve(std::min<std::size_t>(static_cast<std::size_t>(*count), lines.size()));
        bool clamped = false;
        for (std::size_t i = 3; i < lines.size(); ++i) {
            const auto words = textfile::words(lines[i]);
            if (words.empty()) continue;
            // Aseprite writes alpha as a fourth value.
            const auto color = byteWordsColor(words, clamped);
            if (!color) refuse();
            palette.colors.push_back(*color);
        }
        if (clamped) logInfo("PAL.Coder.PaintShopPro: Values outside 0...255 were held at the nearest end");
        if (palette.colors.size() != static_cast<std::size_t>(*count))
            logInfo(formatLogMessage("PAL.Coder.PaintShopPro: The file states %d colors but holds %d",
                                     {std::to_string(*count), std::to_string(palette.colors.size())}));
        return palette;
    }

    // No alpha: Krita drops every line with a fourth value.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.empty() || colors.size() > mostColors)
            logInfo(formatLogMessage("PAL.Coder.PaintShopPro: Writing %d colors; Paint Shop Pro takes 1 to 256",
                                     {std::to_string(colors.size())}));
        std::string out = std::string(magic) + "\r\n" + std::string(version) + "\r\n" + std::to_string(colors.size()) + "\r\n";
        out.reserve(out.size() + colors.size() * 13);
        for (const auto& color : colors) out += byteWords(color) + "\r\n";
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makePaintShopProCoder() { return std::make_unique<PaintShopProCoder>(); }

}  // namespace PAL
