// Corel palettes (.cpl), read only: little endian, seven variants told apart by their first two
// bytes. Each record holds a 12-byte colour value (model, library id, reserved, four component
// bytes) and a name; spot libraries use long records with a catalogue number and an alternate value.
// Models without a colour of their own (book references, Hexachrome, YIQ) are logged and left out.
#include <algorithm>
#include <array>
#include <optional>

#include "exchange/ExchangeLog.h"
#include "exchange/coders/BinaryFile.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::TextEncoding;
using binaryfile::little;
using binaryfile::WholeFile;
using Case = CommonError::Case;

enum class Header { counted, named, table };

struct Variant {
    std::array<uint8_t, 2> magic;
    Header header;
    bool wideNames;        // UTF-16LE rather than 8-bit names
    bool mayBeSpotLibrary;  // long records when the palette type says so
    bool gridTrailer;       // long records end with row, column and one more word
};

constexpr std::array<Variant, 7> variants = {{
    {{0xCC, 0xDC}, Header::counted, false, false, false},  // CorelDRAW 5 to 7
    {{0xCC, 0xBC}, Header::counted, true, false, false},
    {{0xDC, 0xDC}, Header::named, false, false, false},  // CorelDRAW 8 to 11 custom palettes
    {{0xCD, 0xDC}, Header::table, false, true, false},
    {{0xDD, 0xDC}, Header::table, true, false, false},  // CorelDRAW 12 to X4 custom palettes
    {{0xCD, 0xBC}, Header::table, true, true, false},
    {{0xCD, 0xDD}, Header::table, true, true, true},  // CorelDRAW X4 spot libraries
}};

enum FieldId : uint32_t { nameField = 0, typeField = 1, countField = 2 };
constexpr uint32_t maxTableEntries = 16;

struct Contents {
    std::string name;
    std::optional<uint16_t> paletteType;
    uint16_t count = 0;
    size_t recordsStart = 0;
};

using ColorValue = std::array<uint8_t, 12>;

struct Record {
    ColorValue primary;
    std::optional<ColorValue> alternate;
    std::string name;
};

// Custom palettes are type 5 (and 16); other types below 38 are spot libraries.
bool isSpotLibrary(uint16_t paletteType) { return paletteType < 38 && paletteType != 5 && paletteType != 16; }

std::string readName(WholeFile& file, bool wide) {
    const auto length = file.read<uint8_t>();
    const auto bytes = file.readBytes(wide ? 2u * length : length);
    if (wide) return binaryfile::lenientUTF16(bytes, little);
    std::string name;
    BytesParser::decodeText(bytes, TextEncoding::isoLatin1, name);
    return name;
}

Contents readHeader(WholeFile& file, const Variant& variant) {
    Contents contents;
    switch (variant.header) {
        case Header::counted: break;
        case Header::named: contents.name = readName(file, variant.wideNames); break;
        case Header::table: {
            const auto entries = file.read<uint32_t>();
            if (entries == 0 || entries > maxTableEntries) throw CommonError(Case::invalidFormat);
            std::vector<std::pair<uint32_t, uint32_t>> table;
            for (uint32_t i = 0; i < entries; ++i) {
                const auto id = file.read<uint32_t>();
                table.emplace_back(id, file.read<uint32_t>());
            }
            std::optional<size_t> countAt;
            for (const auto& [id, offset] : table) {
                if (offset >= file.size()) throw CommonError(Case::invalidFormat);
                file.seek(offset);
                if (id == nameField) contents.name = readName(file, variant.wideNames);
                if (id == typeField) contents.paletteType = file.read<uint16_t>();
                if (id == countField) countAt = offset;
            }
            if (!countAt) throw CommonError(Case::invalidFormat);
            file.seek(*countAt);
            break;
        }
    }
    contents.count = file.read<uint16_t>();
    contents.recordsStart = file.position();
    return contents;
}

ColorValue readValue(WholeFile& file) {
    ColorValue value;
    const auto bytes = file.readBytes(value.size());
    std::copy(bytes.begin(), bytes.end(), value.begin());
    return value;
}

std::vector<Record> readRecords(WholeFile& file, const Variant& variant, const Contents& contents, bool longRecords) {
    file.seek(contents.recordsStart);
    const size_t smallest = longRecords ? 4 + 12 + 12 + 1 + (variant.gridTrailer ? 12 : 0) : 12 + 1;
    file.require(contents.count, smallest);
    std::vector<Record> records;
    records.reserve(contents.count);
    for (uint16_t i = 0; i < contents.count; ++i) {
        Record record;
        if (longRecords) file.read<uint32_t>();  // catalogue number
        record.primary = readValue(file);
        if (longRecords) record.alternate = readValue(file);
        record.name = readName(file, variant.wideNames);
        if (longRecords && variant.gridTrailer) file.readBytes(12);  // row, column, unknown
        records.push_back(std::move(record));
    }
    return records;
}

// The record kind that the palette type calls for, and when that parse does not end exactly at the
// end of the file, the other kind: writers disagree on which kind a spot library's records take.
// Extra bytes after the records are tolerated when neither kind ends exactly.
std::vector<Record> readAllRecords(WholeFile& file, const Variant& variant, const Contents& contents) {
    if (!variant.mayBeSpotLibrary) return readRecords(file, variant, contents, false);
    // Without a type field, only the X4 spot-library variant is taken for long records.
    const bool preferLong = contents.paletteType ? isSpotLibrary(*contents.paletteType) : variant.gridTrailer;
    std::optional<std::vector<Record>> parses[2];
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            parses[attempt] = readRecords(file, variant, contents, attempt == 0 ? preferLong : !preferLong);
            if (file.atEnd()) return std::move(*parses[attempt]);
        } catch (const std::exception&) {
        }
    }
    for (auto& parse : parses)
        if (parse) return std::move(*parse);
    throw CommonError(Case::invalidEndOfFile);
}

uint16_t word(const ColorValue& value, size_t at) { return static_cast<uint16_t>(value[at] | value[at + 1] << 8); }

std::optional<Color> colorOf(const ColorValue& value, std::string name, ColorType type) {
    const uint8_t* c = value.data() + 8;
    switch (word(value, 0)) {
        case 2: return Color::cmyk(c[0] / 100.0, c[1] / 100.0, c[2] / 100.0, c[3] / 100.0, 1, std::move(name), type);
        case 3:
        case 17: return Color::cmyk(c[0] / 255.0, c[1] / 255.0, c[2] / 255.0, c[3] / 255.0, 1, std::move(name), type);
        case 4: return Color::cmyk(c[0] / 255.0, c[1] / 255.0, c[2] / 255.0, 0, 1, std::move(name), type);
        case 5: return Color::rgb255(c[2], c[1], c[0], 255, std::move(name), type);  // stored B, G, R
        case 6: return Color::hsb(word(value, 8) / 360.0, c[2] / 255.0, c[3] / 255.0, 1, std::move(name), type);
        case 7:
            return Color::hslDegrees(std::min(word(value, 8), uint16_t{360}), c[3] * 100 / 255.0, c[2] * 100 / 255.0, 1,
                                     std::move(name), type);
        case 8: return Color::gray(c[0] == 0 ? 1 : 0, 1, std::move(name), type);
        case 9: return Color::gray255(c[0], 255, std::move(name), type);
        case 12:
            return Color::lab(c[0] * 100 / 255.0, static_cast<int8_t>(c[1]), static_cast<int8_t>(c[2]), 1, std::move(name),
                              type);
        case 18: return Color::lab(c[0] * 100 / 255.0, c[1] - 128.0, c[2] - 128.0, 1, std::move(name), type);
        case 20: {  // registration: every separation at the stored tint
            const double tint = std::min(c[0] / 100.0, 1.0);
            return Color::cmyk(tint, tint, tint, tint, 1, std::move(name), type);
        }
        default: return std::nullopt;
    }
}

bool isEmptyCell(const std::string& name) {
    return name.find("NONASSIGNED") != std::string::npos || name.find("UNASSIGNED") != std::string::npos;
}

class CorelPaletteCoder final : public PaletteCoder {
public:
    CorelPaletteCoder() : PaletteCoder(PaletteFormat::corelPalette) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& source) const override {
        return binaryfile::refusingShortReads([&] {
            WholeFile file(source);
            if (file.size() < 2) throw CommonError(Case::invalidFormat);
            const auto magic = file.readBytes(2);
            const auto variant = std::find_if(variants.begin(), variants.end(), [&](const Variant& v) {
                return std::equal(v.magic.begin(), v.magic.end(), magic.begin());
            });
            if (variant == variants.end()) throw CommonError(Case::invalidFormat);

            const auto contents = readHeader(file, *variant);
            const auto records = readAllRecords(file, *variant, contents);
            Palette palette(contents.name);
            palette.format = PaletteFormat::corelPalette;
            for (const auto& record : records) {
                if (isEmptyCell(record.name)) continue;
                const auto type = record.alternate ? ColorType::spot : ColorType::global;
                auto color = colorOf(record.primary, record.name, type);
                if (!color) {
                    logError(formatLogMessage("CPL: Unsupported color type %d, attempting to recover...",
                                              {std::to_string(word(record.primary, 0))}));
                    if (record.alternate && word(*record.alternate, 0) != word(record.primary, 0)) {
                        color = colorOf(*record.alternate, record.name, type);
                        if (!color)
                            logError(formatLogMessage("CPL: Unsupported color type %d (2), attempting to recover...",
                                                      {std::to_string(word(*record.alternate, 0))}));
                    }
                }
                if (color) palette.colors.push_back(std::move(*color));
            }
            return palette;
        });
    }

    std::string encode(const Palette&) const override {
        logError("CPLCoder: encode() not implemented");
        throw CommonError(Case::notImplemented);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeCorelPaletteCoder() { return std::make_unique<CorelPaletteCoder>(); }

}  // namespace PAL
