// Paint.NET palettes (.txt): ";" comments, then one AARRGGBB hex value per line. The file has no magic,
// so the reader takes only text in which every line is a comment or a hex value and some value has all
// eight digits; plain hex lists are left to the generic text coders (Paint.NET would read "172a3a" as
// fully transparent).
// Writing follows Paint.NET: a UTF-8 byte-order mark, CR LF, its standard comment header.
#include <charconv>
#include <cstdint>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
// Paint.NET's own header, the lines every palette it writes starts with.
constexpr std::string_view header =
    "; paint.net Palette File\r\n"
    "; Lines that start with a semicolon are comments\r\n"
    "; Colors are written as 8-digit hexadecimal numbers: aarrggbb\r\n"
    "; For example, this would specify green: FF00FF00\r\n"
    "; The alpha ('aa') value specifies how transparent a color is. FF is fully opaque, 00 is fully transparent.\r\n"
    "; A palette must consist of ninety six (96) colors. If there are less than this, the remaining color\r\n"
    "; slots will be set to white (FFFFFFFF). If there are more, then the remaining colors will be ignored.\r\n";
// Paint.NET pads a palette to this many colours and ignores the rest.
constexpr std::size_t paintNETSlots = 96;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// 1 to 8 hex digits, with or without "0x", as .NET's Convert.ToUInt32(text, 16) takes them; the count of
// digits goes to `digits`.
std::optional<std::uint32_t> hexValue(std::string_view text, std::size_t& digits) {
    if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
    if (text.empty() || text.size() > 8) return std::nullopt;
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    digits = text.size();
    return value;
}

class PaintNETCoder final : public PaletteCoder {
public:
    PaintNETCoder() : PaletteCoder(PaletteFormat::paintNET) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const std::string text = textfile::fromBytes(textfile::remainingBytes(reader));
        std::vector<std::uint32_t> values;
        bool hasCommentLine = false, hasFullValue = false, hasShortValue = false;
        for (std::string_view line : textfile::splitLines(text)) {
            line = textfile::trimmed(line);
            hasCommentLine = hasCommentLine || line.starts_with(';');
            line = textfile::trimmed(line.substr(0, line.find(';')));
            if (line.empty()) continue;
            std::size_t digits = 0;
            const auto value = hexValue(line, digits);
            if (!value) refuse();
            (digits == 8 ? hasFullValue : hasShortValue) = true;
            values.push_back(*value);
        }
        // Paint.NET always writes all eight digits: a file without one such value is a plain hex or number
        // list. A file of comments alone is an empty Paint.NET palette.
        if (values.empty() ? !hasCommentLine : !hasFullValue) refuse();

        Palette palette;
        palette.format = PaletteFormat::paintNET;
        palette.colors.reserve(values.size());
        for (const std::uint32_t argb : values)
            palette.colors.push_back(Color::rgb255((argb >> 16) & 0xFF, (argb >> 8) & 0xFF, argb & 0xFF, argb >> 24));
        if (hasShortValue)
            logInfo("PAL.Coder.PaintNET: Values of fewer than 8 digits were read as Paint.NET reads them, with the missing "
                    "leading digits as 0: a 6-digit RRGGBB value is fully transparent");
        if (values.size() > paintNETSlots)
            logInfo(formatLogMessage("PAL.Coder.PaintNET: The file holds %d colors; Paint.NET uses only the first 96",
                                     {std::to_string(values.size())}));
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const auto colors = palette.eachColor();
        if (colors.size() > paintNETSlots)
            logInfo(formatLogMessage("PAL.Coder.PaintNET: Writing %d colors; Paint.NET uses only the first 96",
                                     {std::to_string(colors.size())}));
        std::string out = std::string(byteOrderMark) + std::string(header);
        out.reserve(out.size() + colors.size() * 10);
        for (const auto& color : colors) out += color.hexString(ColorByteFormat::argb, false, true) + "\r\n";
        return out;
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makePaintNETCoder() { return std::make_unique<PaintNETCoder>(); }

}  // namespace PAL
