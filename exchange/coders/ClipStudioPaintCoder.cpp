// Clip Studio Paint colour sets (.cls): little endian; the set name twice (Shift-JIS for old
// readers, UTF-8 for current ones), then records of R, G, B, A and an optional UTF-16 name.
// One flat list of RGB swatches: groups are flattened, other spaces converted, and alpha is only
// "opaque" or "the transparent swatch", as Clip Studio Paint itself treats it.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using BytesParser::BytesWriter;
using BytesParser::TextEncoding;
using binaryfile::little;
using binaryfile::WholeFile;
using Case = CommonError::Case;

constexpr std::string_view magic = "SLCC";
constexpr uint16_t version = 0x0100;
constexpr std::array<uint8_t, 4> namedFlag = {1, 0, 0, 0};
constexpr uint32_t colorBlockMarker = 4;  // Clip Studio Paint writes 4 and refuses anything above
// Clip Studio Paint's own limits, in UTF-16 units and in bytes.
constexpr size_t setNameUnits = 64, setNameBytes = 192, swatchNameUnits = 64;

// The C library's converter, for Shift-JIS (Windows code page 932).
class Iconv {
public:
    Iconv(const char* to, const char* from) : handle(iconv_open(to, from)) {}
    ~Iconv() {
        if (handle != reinterpret_cast<iconv_t>(-1)) iconv_close(handle);
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    std::optional<std::string> convert(std::string_view in) {
        if (handle == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
        iconv(handle, nullptr, nullptr, nullptr, nullptr);
        std::string out(in.size() * 4 + 8, '\0');
        char* input = const_cast<char*>(in.data());
        char* output = out.data();
        size_t inputLeft = in.size(), outputLeft = out.size();
        if (iconv(handle, &input, &inputLeft, &output, &outputLeft) == static_cast<size_t>(-1) ||
            iconv(handle, nullptr, nullptr, &output, &outputLeft) == static_cast<size_t>(-1))
            return std::nullopt;
        out.resize(out.size() - outputLeft);
        return out;
    }

private:
    iconv_t handle;
};

size_t utf8Length(unsigned char lead) { return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4; }

// The legacy copy of the set name, as Clip Studio Paint writes it: a character that Shift-JIS cannot
// hold becomes one space, two for a character outside the basic plane.
std::string legacyName(std::string_view utf8) {
    Iconv toShiftJIS("CP932", "UTF-8");
    std::string out;
    for (size_t i = 0; i < utf8.size();) {
        const size_t length = std::min(utf8Length(static_cast<unsigned char>(utf8[i])), utf8.size() - i);
        const auto converted = toShiftJIS.convert(utf8.substr(i, length));
        out += converted ? *converted : std::string(length == 4 ? 2 : 1, ' ');
        i += length;
    }
    return out;
}

std::vector<uint8_t> encoded(std::string_view text, TextEncoding encoding) {
    std::vector<uint8_t> bytes;
    if (!BytesParser::encodeText(text, encoding, bytes)) throw CommonError(Case::invalidString);
    return bytes;
}

// The longest run of whole characters within both limits (a character outside the basic plane
// counts as two units, as in UTF-16). Throws invalidString when the text is not UTF-8.
std::string clamped(std::string_view utf8, size_t maxUnits, size_t maxBytes) {
    encoded(utf8, TextEncoding::utf8);
    size_t end = 0, units = 0;
    while (end < utf8.size()) {
        const size_t length = utf8Length(static_cast<unsigned char>(utf8[end]));
        const size_t characterUnits = length == 4 ? 2 : 1;
        if (end + length > utf8.size() || end + length > maxBytes || units + characterUnits > maxUnits) break;
        end += length;
        units += characterUnits;
    }
    return std::string(utf8.substr(0, end));
}

std::string setName(const std::vector<uint8_t>& legacy, const std::vector<uint8_t>& utf8) {
    std::string name;
    if (!utf8.empty() && BytesParser::decodeText(utf8, TextEncoding::utf8, name)) return name;
    const std::string legacyBytes(legacy.begin(), legacy.end());
    if (auto decoded = Iconv("UTF-8", "CP932").convert(legacyBytes)) return *decoded;
    return textfile::latin1ToUTF8(legacyBytes);
}

// A record is walked by its own length, so one longer than needed (zero filled) is skipped correctly,
// and one of 4 bytes (a colour without the name flag) is taken too.
Color readRecord(const std::vector<uint8_t>& record) {
    std::string name;
    if (record.size() >= 10 && std::equal(record.begin() + 4, record.begin() + 8, namedFlag.begin())) {
        const size_t nameBytes = record[8] | record[9] << 8;
        if (10 + nameBytes > record.size()) throw CommonError(Case::invalidFormat);
        name = binaryfile::lenientUTF16(std::span(record).subspan(10, nameBytes), little);
    }
    // Any alpha but 0 is opaque to Clip Studio Paint.
    return Color::rgb255(record[0], record[1], record[2], record[3] == 0 ? 0 : 255, std::move(name));
}

uint8_t channelByte(double unit) { return static_cast<uint8_t>(std::lround(std::clamp(unit, 0.0, 1.0) * 255)); }

class ClipStudioPaintCoder final : public PaletteCoder {
public:
    ClipStudioPaintCoder() : PaletteCoder(PaletteFormat::clipStudioPaint) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::refusingShortReads([&] {
            WholeFile file(source);
            binaryfile::requireMagic(file, magic);
            file.read<uint16_t>();  // version: any other is taken only when every length below agrees

            const auto nameBlock = file.read<uint32_t>();
            const auto legacy = file.readBytes(file.read<uint16_t>());
            file.read<uint32_t>();  // always 0, ignored by Clip Studio Paint
            const auto utf8 = file.readBytes(file.read<uint16_t>());
            if (nameBlock != legacy.size() + utf8.size() + 8) throw CommonError(Case::invalidFormat);

            Palette palette(setName(legacy, utf8));
            palette.format = PaletteFormat::clipStudioPaint;
            file.read<uint32_t>();  // the colour block marker: every value behaves alike
            const auto count = file.read<uint32_t>();
            const auto recordBytes = file.read<uint32_t>();
            file.require(recordBytes);
            if (count > recordBytes / 8) throw CommonError(Case::invalidFormat);  // a record has 8 bytes at least

            palette.colors.reserve(count);
            size_t walked = 0;
            for (uint32_t i = 0; i < count; ++i) {
                const auto length = file.read<uint32_t>();
                if (length < 4 || walked + 4 + uint64_t{length} > recordBytes) throw CommonError(Case::invalidFormat);
                palette.colors.push_back(readRecord(file.readBytes(length)));
                walked += 4 + length;
            }
            if (walked != recordBytes) throw CommonError(Case::invalidFormat);
            return palette;
        });
    }

    std::string encode(const Palette& palette) const override {
        const auto name = clamped(palette.name, setNameUnits, setNameBytes);
        const auto legacy = legacyName(name);

        BytesWriter records;
        const auto colors = palette.eachColor();
        for (const auto& color : colors) {
            const auto units = encoded(clamped(color.name, swatchNameUnits, SIZE_MAX), TextEncoding::utf16LittleEndian);
            records.writeInteger<uint32_t>(static_cast<uint32_t>(units.empty() ? 8 : 10 + units.size()), little);
            const auto rgb = color.rgb();
            if (channelByte(color.alpha) == 0) {
                records.writeInteger<uint32_t>(0, little);  // Clip Studio Paint's transparent swatch
            } else {
                const uint8_t rgba[4] = {channelByte(rgb.rf), channelByte(rgb.gf), channelByte(rgb.bf), 0xFF};
                records.writeBytes(rgba);
            }
            records.writeInteger<uint32_t>(units.empty() ? 0 : 1, little);
            if (!units.empty()) {
                records.writeInteger<uint16_t>(static_cast<uint16_t>(units.size()), little);
                records.writeBytes(units);
            }
            if (records.count() > UINT32_MAX) throw CommonError(Case::indexOutOfRange);
        }

        BytesWriter out;
        out.writeString(magic, TextEncoding::ascii);
        out.writeInteger<uint16_t>(version, little);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(legacy.size() + name.size() + 8), little);
        out.writeInteger<uint16_t>(static_cast<uint16_t>(legacy.size()), little);
        out.writeBytes(legacy);
        out.writeInteger<uint32_t>(0, little);
        out.writeInteger<uint16_t>(static_cast<uint16_t>(name.size()), little);
        out.writeBytes(name);
        out.writeInteger<uint32_t>(colorBlockMarker, little);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(colors.size()), little);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(records.count()), little);
        out.writeBytes(records.data());
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeClipStudioPaintCoder() { return std::make_unique<ClipStudioPaintCoder>(); }

}  // namespace PAL
