// HomeSite palettes (.hpl): "Palette", "Version 3.0" or "4.0", a line of dashes (or an empty line), then
// one "R G B" line per colour. Arc System Works' binary .hpl files ("HPAL") fail at the first line.
#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/ChannelBytes.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::trimmed;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// Empty, or dashes only: the separator under the header.
bool isSeparator(std::string_view line) { return line.find_first_not_of('-') == std::string_view::npos; }

class HomeSiteCoder final : public PaletteCoder {
public:
    HomeSiteCoder() : PaletteCoder(PaletteFormat::hpl) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::fromBytes(textfile::remainingBytes(reader));
        const auto lines = textfile::splitLines(text);
        if (lines.size() < 2 || trimmed(lines[0]) != "Palette") refuse();
        const auto version = textfile::words(lines[1]);
        if (version.size() != 2 || version[0] != "Version" || !textfile::number(version[1])) refuse();
        if (version[1] != "3.0" && version[1] != "4.0")
            logInfo(formatLogMessage("PAL.Coder.HomeSite: Unknown version %@, reading as 4.0", {std::string(version[1])}));

        Palette palette;
        palette.format = PaletteFormat::hpl;
        bool clamped = false;
        for (std::size_t i = 2; i < lines.size(); ++i) {
            const auto line = trimmed(lines[i]);
            if (isSeparator(line)) continue;
            const auto words = textfile::words(line);
            const auto color = words.size() == 3 ? byteWordsColor(words, clamped) : std::nullopt;
            if (!color) refuse();
            palette.colors.push_back(*color);
        }
        if (clamped) logInfo("PAL.Coder.HomeSite: Values outside 0...255 were held at the nearest end");
        return palette;
    }

    // HomeSite is a Windows program: CR LF.
    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        std::string out = "Palette\r\nVersion 4.0\r\n-----------\r\n";
        out.reserve(out.size() + colors.size() * 13);
        for (const auto& color : colors) out += byteWords(color) + "\r\n";
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeHomeSiteCoder() { return std::make_unique<HomeSiteCoder>(); }

}  // namespace PAL
