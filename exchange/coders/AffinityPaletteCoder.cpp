// Affinity palettes (.afpalette), read only. Serif does not document the format; what is known is
// the container (magic, version, the "Swth" kind) and a few tags of the body, stored byte-reversed:
// "PlCN" before the palette name, "colD" before each colour's four floats, introduced by the colour
// class tag "RGBA", and "PaNV" before the list of entry names. So the body is scanned for those tags
// rather than parsed. What this cannot see: a colour Affinity stored as a reference to an earlier
// equal one, and colours of other classes (CMYK, Lab, grey), which are logged and left out.
#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

#include "exchange/ExchangeLog.h"
#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using binaryfile::WholeFile;
using Bytes = std::vector<uint8_t>;
using Case = CommonError::Case;

constexpr std::string_view containerMagic{"\x00\xFF\x4B\x41", 4};
constexpr std::string_view swatchesKind = "htwS";
constexpr size_t kindOffset = 8;

// Tags as they stand in the file.
constexpr std::string_view nameTag = "NClP", namesTag = "VNaP", colorTag = "Dloc_", rgbaClass = "ABGR";
constexpr size_t rgbaBytes = 16;
// How far before a colour record its class tag may stand.
constexpr size_t classWindow = 32;
// A name longer than this is not taken for one: the tag was found by chance.
constexpr uint32_t longestName = 4096;

std::optional<size_t> find(const Bytes& bytes, std::string_view tag, size_t from) {
    if (from >= bytes.size()) return std::nullopt;
    const auto at = std::search(bytes.begin() + static_cast<ptrdiff_t>(from), bytes.end(), tag.begin(), tag.end(),
                                [](uint8_t b, char c) { return b == static_cast<uint8_t>(c); });
    if (at == bytes.end()) return std::nullopt;
    return static_cast<size_t>(at - bytes.begin());
}

uint32_t wordAt(const Bytes& bytes, size_t at) {
    return uint32_t{bytes[at]} | uint32_t{bytes[at + 1]} << 8 | uint32_t{bytes[at + 2]} << 16 | uint32_t{bytes[at + 3]} << 24;
}

// A u32 byte length and UTF-8 text at `at`; advances `at` past it.
std::optional<std::string> textAt(const Bytes& bytes, size_t& at) {
    if (at + 4 > bytes.size()) return std::nullopt;
    const uint32_t length = wordAt(bytes, at);
    if (length > longestName || length > bytes.size() - at - 4) return std::nullopt;
    std::string text;
    if (!BytesParser::decodeText({bytes.data() + at + 4, length}, BytesParser::TextEncoding::utf8, text)) return std::nullopt;
    at += 4 + length;
    return text;
}

// Whether a one-byte type code stands between a tag and its value is not known; both are tried.
template <typename Read>
auto afterTag(const Bytes& bytes, std::string_view tag, Read read) -> decltype(read(bytes, std::declval<size_t&>())) {
    const auto at = find(bytes, tag, 0);
    if (!at) return std::nullopt;
    for (size_t skip : {0, 1}) {
        size_t position = *at + tag.size() + skip;
        if (auto value = read(bytes, position)) return value;
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> nameListAt(const Bytes& bytes, size_t& at) {
    if (at + 4 > bytes.size()) return std::nullopt;
    const uint32_t count = wordAt(bytes, at);
    if (count > (bytes.size() - at - 4) / 4) return std::nullopt;
    at += 4;
    std::vector<std::string> names;
    for (uint32_t i = 0; i < count; ++i) {
        auto name = textAt(bytes, at);
        if (!name) return std::nullopt;
        names.push_back(std::move(*name));
    }
    return names;
}

// The last four upper-case letters standing shortly before a colour record: its class tag.
std::optional<std::string_view> classTagBefore(const Bytes& bytes, size_t record, size_t earliest) {
    const auto isTagByte = [](uint8_t b) { return b >= 'A' && b <= 'Z'; };
    const size_t from = std::max(earliest, record > classWindow ? record - classWindow : 0);
    for (size_t at = record; at >= from + 4; --at) {
        if (std::all_of(bytes.begin() + static_cast<ptrdiff_t>(at - 4), bytes.begin() + static_cast<ptrdiff_t>(at), isTagByte))
            return std::string_view(reinterpret_cast<const char*>(bytes.data()) + at - 4, 4);
    }
    return std::nullopt;
}

std::optional<Color> rgbaAt(const Bytes& bytes, size_t at) {
    double rgba[4];
    for (double& value : rgba) {
        value = std::bit_cast<float>(wordAt(bytes, at));
        // Not a colour's floats: the tag bytes occurred by chance.
        if (!(value >= 0 && value <= 1)) return std::nullopt;
        at += 4;
    }
    return Color::rgb(rgba[0], rgba[1], rgba[2], rgba[3]);
}

class AffinityPaletteCoder final : public PaletteCoder {
public:
    AffinityPaletteCoder() : PaletteCoder(PaletteFormat::afpalette) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::refusingShortReads([&] {
            WholeFile file(source);
            const Bytes bytes = file.readBytes(file.size());
            if (!binaryfile::holds(bytes, 0, containerMagic) || !binaryfile::holds(bytes, kindOffset, swatchesKind))
                throw CommonError(Case::invalidFormat);

            Palette palette(afterTag(bytes, nameTag, textAt).value_or(""));
            palette.format = PaletteFormat::afpalette;
            size_t index = 0, searchFrom = kindOffset + swatchesKind.size();
            while (const auto record = find(bytes, colorTag, searchFrom)) {
                const size_t values = *record + colorTag.size();
                if (values + rgbaBytes > bytes.size()) break;
                const auto classTag = classTagBefore(bytes, *record, searchFrom);
                if (classTag && *classTag != rgbaClass) {
                    const std::string readingOrder(classTag->rbegin(), classTag->rend());
                    logError(formatLogMessage("afpalette: unsupported color type '%@' at index %d, curpos %d",
                                              {readingOrder, std::to_string(index), std::to_string(*record)}));
                } else if (auto color = rgbaAt(bytes, values)) {
                    palette.colors.push_back(std::move(*color));
                }
                ++index;
                searchFrom = values + rgbaBytes;
            }
            // Names go with colours only when the counts agree; otherwise which name is whose is unknown.
            if (const auto names = afterTag(bytes, namesTag, nameListAt); names && names->size() == palette.colors.size())
                for (size_t i = 0; i < names->size(); ++i) palette.colors[i].name = (*names)[i];
            return palette;
        });
    }

    std::string encode(const Palette&) const override {
        logError("AFPaletteCoder: encode() not implemented");
        throw CommonError(Case::notImplemented);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeAffinityPaletteCoder() { return std::make_unique<AffinityPaletteCoder>(); }

}  // namespace PAL
