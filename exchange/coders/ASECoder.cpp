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

size_t utf16Length(const std::string& text) {
    std::vector<uint8_t> units;
    BytesParser::encodeText(text, TextEncoding::utf16BigEndian, units);
    return units.size() / 2;
}

// Logs the line where the refusal was found, then refuses.
[[noreturn]] void fail(std::string message, CommonError error, const char* function = __builtin_FUNCTION(),
                       unsigned line = __builtin_LINE()) {
    logError(std::move(message), __FILE__, function, line);
    throw error;
}

Color readColor(BytesReader& reader) {
    std::string name;
    if (const auto nameLength = reader.readInteger<uint16_t>(big); nameLength != 0) {
        name = reader.readWideNullTerminatedString(TextEncoding::utf16BigEndian);
        if (utf16Length(name) + 1 != nameLength)
            fail("PAL.Coder.ASE: Invalid color name", CommonError(CommonError::Case::invalidString));
    }

    std::string tag;
    BytesParser::decodeText(reader.readBytes(4), TextEncoding::isoLatin1, tag);
    const auto model = std::find(modelTags.begin(), modelTags.end(), tag);
    if (model == modelTags.end())
        fail(formatLogMessage("PAL.Coder.ASE: Invalid .ase color model %@", {tag}),
             CommonError(CommonError::Case::unknownColorMode, tag));
    const auto space = static_cast<ColorSpace>(model - modelTags.begin());

    const auto floats = reader.readFloat32s(static_cast<size_t>(componentCount(space)), big);
    std::vector<double> components(floats.begin(), floats.end());
    if (space == ColorSpace::LAB) components[0] *= 100;  // L is stored as 0...1

    const auto type = reader.readInteger<uint16_t>(big);
    if (type > 2)
        fail(formatLogMessage("PAL.Coder.ASE: Invalid color type %@", {std::to_string(type)}),
             CommonError(CommonError::Case::unknownColorType, int64_t{type}));
    return Color(space, std::move(components), 1.0, std::move(name), static_cast<ColorType>(type));
}

// The name length word (terminator counted), the UTF-16 units and the terminator.
void writeName(BytesWriter& body, const std::string& name) {
    const size_t length = utf16Length(name) + 1;
    if (length > 0xFFFF) throw CommonError(CommonError::Case::invalidString);
    body.writeInteger<uint16_t>(static_cast<uint16_t>(length), big);
    body.writeString(name, TextEncoding::utf16BigEndian);
    body.writeInteger<uint16_t>(0, big);
}

void writeBlock(BytesWriter& out, uint16_t type, const BytesWriter& body) {
    out.writeInteger<uint16_t>(type, big);
    out.writeInteger<uint32_t>(static_cast<uint32_t>(body.count()), big);
    out.writeBytes(body.data());
}

void writeColor(BytesWriter& out, const Color& color) {
    if (color.colorComponents.size() != static_cast<size_t>(componentCount(color.colorSpace)))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    BytesWriter body;
    writeName(body, color.name);
    body.writeString(modelTags[static_cast<size_t>(color.colorSpace)], TextEncoding::ascii);
    for (size_t i = 0; i < color.colorComponents.size(); ++i) {
        const double value = color.colorComponents[i];
        body.writeFloat32(static_cast<float>(color.colorSpace == ColorSpace::LAB && i == 0 ? value / 100 : value), big);
    }
    body.writeInteger<uint16_t>(static_cast<uint16_t>(color.colorType), big);
    writeBlock(out, colorBlock, body);
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
        const auto blockCount = reader.readInteger<uint32_t>(big);
        for (uint32_t block = 0; block < blockCount; ++block) {
            const auto type = reader.readInteger<uint16_t>(big);
            // The body is parsed by its own structure; its stated length is not used.
            const auto length = reader.readInteger<uint32_t>(big);
            switch (type) {
                case colorBlock:
                    (group ? group->colors : palette.colors).push_back(readColor(reader));
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
        BytesWriter out;
        out.writeString("ASEF", TextEncoding::ascii);
        out.writeInteger<uint16_t>(1, big);
        out.writeInteger<uint16_t>(0, big);

        size_t blockCount = 2 * palette.groups.size() + palette.colors.size();
        for (const auto& group : palette.groups) blockCount += group.colors.size();
        if (blockCount > UINT32_MAX) throw CommonError(CommonError::Case::indexOutOfRange);
        out.writeInteger<uint32_t>(static_cast<uint32_t>(blockCount), big);

        for (const auto& color : palette.colors) writeColor(out, color);
        for (const auto& group : palette.groups) {
            BytesWriter name;
            writeName(name, group.name);
            writeBlock(out, groupStartBlock, name);
            for (const auto& color : group.colors) writeColor(out, color);
            out.writeInteger<uint16_t>(groupEndBlock, big);
            out.writeInteger<uint32_t>(0, big);
        }
        return out.data();
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeASECoder() { return std::make_unique<ASECoder>(); }

}  // namespace PAL
