// GIMP palettes (.gpl). Reading is more tolerant than GIMP (any line ending, a byte-order mark,
// header keys anywhere before the first colour, Aseprite's "Channels: RGBA"); writing follows GIMP's
// own layout exactly, so GIMP, Krita, Inkscape and Aseprite all read what we write.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

using textfile::isBlank;
using textfile::singleLine;
using textfile::splitLines;
using textfile::trimmed;

constexpr std::string_view magic = "GIMP Palette";
// What GIMP, Krita and Aseprite write for an entry without a name.
constexpr std::string_view untitled = "Untitled";

std::string entryName(std::string_view rest) {
    rest = trimmed(rest);
    return rest == untitled ? std::string() : std::string(rest);
}

// "Key: value" before the first colour; keys start with a letter.
bool isHeaderLine(std::string_view line) {
    const auto colon = line.find(':');
    return !line.empty() && std::isalpha(static_cast<unsigned char>(line.front())) && colon != std::string_view::npos;
}

// An unsigned decimal token; values above 255 are held at 255.
bool readComponent(std::string_view& rest, int& value) {
    while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
    std::size_t digits = 0;
    long long number = 0;
    while (digits < rest.size() && std::isdigit(static_cast<unsigned char>(rest[digits]))) {
        number = std::min(number * 10 + (rest[digits] - '0'), 1000LL);
        ++digits;
    }
    if (digits == 0 || (digits < rest.size() && !isBlank(rest[digits]))) return false;
    value = static_cast<int>(std::min(number, 255LL));
    rest.remove_prefix(digits);
    return true;
}

class GIMPCoder final : public PaletteCoder {
public:
    GIMPCoder() : PaletteCoder(PaletteFormat::gimp) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        const std::string content = textfile::fromBytes(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        const auto lines = splitLines(content);
        if (lines.empty() || !lines.front().starts_with(magic)) throw CommonError(CommonError::Case::invalidFormat);

        Palette palette;
        palette.format = PaletteFormat::gimp;
        bool inHeader = true;
        int channels = 3;
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const std::string_view line = trimmed(lines[i]);
            if (line.empty() || line.front() == '#') continue;
            if (inHeader && isHeaderLine(line)) {
                const auto colon = line.find(':');
                const auto key = line.substr(0, colon);
                const auto value = trimmed(line.substr(colon + 1));
                if (key == "Name") palette.name = std::string(value);
                else if (key == "Channels") channels = channelCount(value);
                // Columns only suggests a view width, and other keys are other programs' metadata.
                continue;
            }
            inHeader = false;
            palette.colors.push_back(colorLine(line, channels));
        }
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        const std::size_t colorCount = palette.totalColorCount();
        std::string out = std::string(magic) + "\nName: " + singleLine(palette.name) + "\nColumns: " +
                          std::to_string(std::min<std::size_t>(colorCount, 16)) + "\n#\n";
        // A colour's line is its three channels, a tab, its name and the line break.
        std::size_t size = out.size() + 32;
        for (const Color& color : palette.eachColor()) size += 13 + std::max(color.name.size(), untitled.size());
        for (const auto& group : palette.groups) size += 3 + group.name.size();
        out.reserve(size);
        const std::size_t headerEnd = out.size();
        writeColors(out, palette.colors);
        for (const auto& group : palette.groups) {
            // GIMP has no groups: the title stands as a comment before the group's colours.
            out += "# " + singleLine(group.name) + "\n";
            writeColors(out, group.colors);
        }
        // Krita refuses palette files shorter than 50 bytes.
        if (out.size() < 50) out.insert(headerEnd, "# Palette written by Kro\n");
        return out;
    }

private:
    static int channelCount(std::string_view value) {
        if (value == "RGB") return 3;
        if (value == "RGBA") return 4;
        throw CommonError(CommonError::Case::invalidFormat);
    }

    static Color colorLine(std::string_view line, int channels) {
        int values[4] = {0, 0, 0, 255};
        std::string_view rest = line;
        for (int c = 0; c < channels; ++c)
            if (!readComponent(rest, values[c])) throw CommonError(CommonError::Case::invalidFormat);
        return Color::rgb255(values[0], values[1], values[2], values[3], entryName(rest));
    }

    // A channel right-aligned in three places, as GIMP's "%3d".
    static void appendChannel(std::string& out, double unit) {
        const int value = static_cast<int>(std::round(std::clamp(unit, 0.0, 1.0) * 255));
        const char digits[3] = {value >= 100 ? char('0' + value / 100) : ' ', value >= 10 ? char('0' + value / 10 % 10) : ' ',
                                char('0' + value % 10)};
        out.append(digits, 3);
    }

    static void writeColors(std::string& out, const std::vector<Color>& colors) {
        for (const auto& color : colors) {
            const RGB rgb = color.rgb();
            appendChannel(out, rgb.rf);
            out += ' ';
            appendChannel(out, rgb.gf);
            out += ' ';
            appendChannel(out, rgb.bf);
            out += '\t';
            const std::string name = singleLine(trimmed(color.name));
            out += name.empty() ? untitled : std::string_view(name);
            out += '\n';
        }
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeGIMPCoder() { return std::make_unique<GIMPCoder>(); }

}  // namespace PAL
