// Adobe Swatch Exchange (.ase): big-endian blocks of colours and groups, names in UTF-16 with
// their terminator counted. Groups survive; alpha does not (the format has no field for it).
#include <algorithm>
#include <array>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/BytesWriter.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

using BytesParser::BytesReader;
using BytesParser::BytesWriter;
using BytesParser::TextEncoding;
constexpr auto big = BytesParser::Endianness::big;

constexpr uint16_t colorBlock = 0x0001, groupStartBlock = 0xC001, groupEndBlock = 0xC002;

// Model tags in PAL::ColorSpace order.
constexpr std::array<std::string_view, 4> modelTags = {"CMYK", "RGB ", "LAB ", "Gray"};

// Logs the line where the refusal was found, then refuses.
[[noreturn]] void fail(std::string message, CommonError error, const char* function = __builtin_FUNCTION(),
                       unsigned line = __builtin_LINE()) {
    logError(std::move(message), __FILE__, function, line);
    throw error;
}

// The 4-byte model tag as a number, so that a colour's tag is matched without making text of it.
constexpr uint32_t tagNumber(std::string_view tag) {
    return uint32_t(uint8_t(tag[0])) << 24 | uint32_t(uint8_t(tag[1])) << 16 | uint32_t(uint8_t(tag[2])) << 8 | uint8_t(tag[3]);
}

// Reads the colours of one file, with the buffers a name needs made once for all of them.
class ColorReader {
public:
    explicit ColorReader(BytesReader& reader) : reader(reader) {}

    Color readColor() {
        std::string name;
        if (const auto nameLength = reader.readInteger<uint16_t>(big); nameLength != 0) {
            readUnitsToTerminator();
            if (!BytesParser::decodeText(units, TextEncoding::utf16BigEndian, name))
                throw BytesParser::ReaderError(BytesParser::ReaderError::invalidStringEncoding);
            // The name read as far as its terminator must be as long as stated; UTF-16 decodes without loss,
            // so the units read are its length.
            if (units.size() / 2 + 1 != nameLength)
                fail("PAL.Coder.ASE: Invalid color name", CommonError(CommonError::Case::invalidString));
        }

        const auto tag = reader.readInteger<uint32_t>(big);
        const auto model = std::find_if(modelTags.begin(), modelTags.end(), [&](std::string_view known) { return tagNumber(known) == tag; });
        if (model == modelTags.end()) {
            const uint8_t bytes[4] = {uint8_t(tag >> 24), uint8_t(tag >> 16), uint8_t(tag >> 8), uint8_t(tag)};
            std::string text;
            BytesParser::decodeText(bytes, TextEncoding::isoLatin1, text);
            fail(formatLogMessage("PAL.Coder.ASE: Invalid .ase color model %@", {text}), CommonError(CommonError::Case::unknownColorMode, text));
        }
        const auto space = static_cast<ColorSpace>(model - modelTags.begin());

        double components[4];
        const auto count = static_cast<size_t>(componentCount(space));
        for (size_t i = 0; i < count; ++i) components[i] = reader.readFloat32(big);
        if (space == ColorSpace::LAB) components[0] *= 100;  // L is stored as 0...1

        const auto type = reader.readInteger<uint16_t>(big);
        if (type > 2)
            fail(formatLogMessage("PAL.Coder.ASE: Invalid color type %@", {std::to_string(type)}),
                 CommonError(CommonError::Case::unknownColorType, int64_t{type}));
        return Color(space, Components(components, count), 1.0, std::move(name), static_cast<ColorType>(type));
    }

private:
    // UTF-16 units up to a 0x0000 unit, which is consumed and not kept; the end of the data ends them too.
    void readUnitsToTerminator() {
        units.clear();
        while (true) {
            uint16_t unit;
            try {
                unit = reader.readInteger<uint16_t>(big);
            } catch (const BytesParser::ReaderError&) {
                break;
            }
            if (unit == 0) break;
            units.push_back(uint8_t(unit >> 8));
            units.push_back(uint8_t(unit));
        }
    }

    BytesReader& reader;
    std::vector<uint8_t> units;
};

// Writes the blocks of one file into one writer, with the buffer a name needs made once for all of them.
class BlockWriter {
public:
    void header(size_t blockCount) {
        out.writeString("ASEF", TextEncoding::ascii);
        out.writeInteger<uint16_t>(1, big);
        out.writeInteger<uint16_t>(0, big);
        if (blockCount > UINT32_MAX) throw CommonError(CommonError::Case::indexOutOfRange);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(blockCount), big);
    }

    void color(const Color& color) {
        if (color.colorComponents.size() != static_cast<size_t>(componentCount(color.colorSpace)))
            throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
        encodeName(color.name);
        out.writeInteger<uint16_t>(colorBlock, big);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(nameFieldsSize() + 4 + 4 * color.colorComponents.size() + 2), big);
        writeName();
        out.writeString(modelTags[static_cast<size_t>(color.colorSpace)], TextEncoding::ascii);
        for (size_t i = 0; i < color.colorComponents.size(); ++i) {
            const double value = color.colorComponents[i];
            out.writeFloat32(static_cast<float>(color.colorSpace == ColorSpace::LAB && i == 0 ? value / 100 : value), big);
        }
        out.writeInteger<uint16_t>(static_cast<uint16_t>(color.colorType), big);
    }

    void groupStart(const std::string& name) {
        encodeName(name);
        out.writeInteger<uint16_t>(groupStartBlock, big);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(nameFieldsSize()), big);
        writeName();
    }

    void groupEnd() {
        out.writeInteger<uint16_t>(groupEndBlock, big);
        out.writeInteger<uint32_t>(0, big);
    }

    const std::string& bytes() const { return out.data(); }

private:
    void encodeName(const std::string& name) {
        if (!BytesParser::encodeText(name, TextEncoding::utf16BigEndian, units))
            throw BytesParser::WriterError(BytesParser::WriterError::cannotConvertStringEncoding);
        if (units.size() / 2 + 1 > 0xFFFF) throw CommonError(CommonError::Case::invalidString);
    }
    // The name length word (terminator counted), the UTF-16 units and the terminator.
    size_t nameFieldsSize() const { return 2 + units.size() + 2; }
    void writeName() {
        out.writeInteger<uint16_t>(static_cast<uint16_t>(units.size() / 2 + 1), big);
        out.writeBytes(units);
        out.writeInteger<uint16_t>(0, big);
    }

    BytesWriter out;
    std::vector<uint8_t> units;
};

// Room for as many colours outside groups as the blocks still to come, as far as the bytes left can hold
// them, so that a palette of 100,000 colours is not copied as its list grows.
void reserveGlobalColors(Palette& palette, BytesReader& reader, uint32_t blocksToCome) {
    constexpr size_t smallestColorBlock = 18;  // unnamed, gray
    if (const auto left = reader.bytesLeft()) palette.colors.reserve(std::min<size_t>(blocksToCome, *left / smallestColorBlock + 1));
}

class ASECoder final : public PaletteCoder {
public:
    ASECoder() : PaletteCoder(PaletteFormat::ase) {}
    using PaletteCoder::decode;

    Palette decode(BytesReader& reader) const override {
        if (reader.readBytes(4) != std::vector<uint8_t>{'A', 'S', 'E', 'F'})
            fail("PAL.Coder.ASE: Invalid .ase header", CommonError(CommonError::Case::invalidASEHeader));
        const auto major = reader.readInteger<uint16_t>(big), minor = reader.readInteger<uint16_t>(big);
        if (major != 1 || minor != 0)
            logError(formatLogMessage("PAL.Coder.ASE: Untested ASE version %d.%d - attempting load...",
                                      {std::to_string(major), std::to_string(minor)}));

        Palette palette;
        palette.format = PaletteFormat::ase;
        std::optional<Group> group;
        ColorReader colors(reader);
        const auto blockCount = reader.readInteger<uint32_t>(big);
        for (uint32_t block = 0; block < blockCount; ++block) {
            const auto type = reader.readInteger<uint16_t>(big);
            // The body is parsed by its own structure; its stated length is not used.
            const auto length = reader.readInteger<uint32_t>(big);
            switch (type) {
                case colorBlock:
                    if (!group && palette.colors.empty()) reserveGlobalColors(palette, reader, blockCount - block);
                    (group ? group->colors : palette.colors).push_back(colors.readColor());
                    break;
                case groupStartBlock:
                    if (group) {
                        logError("PAL.Coder.ASE: Opening a new group with a group already open - using existing group");
                        palette.groups.push_back(*group);
                    }
                    if (length != 0) {
                        reader.readInteger<uint16_t>(big);
                        group = Group(reader.readWideNullTerminatedString(TextEncoding::utf16BigEndian));
                    }
                    break;
                case groupEndBlock:
                    if (!group)
                        fail("PAL.Coder.ASE: Attempting to close group without an open group",
                             CommonError(CommonError::Case::groupNotOpen));
                    palette.groups.push_back(std::move(*group));
                    group.reset();
                    break;
                default:
                    fail("PAL.Coder.ASE: Unknown ase block type", CommonError(CommonError::Case::unknownBlockType));
            }
        }
        if (group) palette.groups.push_back(std::move(*group));
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        BlockWriter out;
        out.header(2 * palette.groups.size() + palette.totalColorCount());
        for (const auto& color : palette.colors) out.color(color);
        for (const auto& group : palette.groups) {
            out.groupStart(group.name);
            for (const auto& color : group.colors) out.color(color);
            out.groupEnd();
        }
        return out.bytes();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeASECoder() { return std::make_unique<ASECoder>(); }

}  // namespace PAL
