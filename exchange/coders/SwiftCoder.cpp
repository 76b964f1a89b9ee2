// Palettes as Swift source: SwiftUI colours under `extension Color`, one enum per palette and one
// nested enum per group, one static property per colour (`Color.HarbourDusk.Accents.coral`). The
// palette's enum keeps its colours clear of SwiftUI's own (`Color.red`). Write only.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

constexpr char32_t notACharacter = 0xFFFFFFFF;

// One code point from UTF-8, or notACharacter for a byte that does not start a valid sequence.
char32_t nextCodePoint(std::string_view text, std::size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    if (lead < 0x80) return lead;
    const int length = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    if (length == 0 || lead > 0xF4 || i + length > text.size()) return notACharacter;
    char32_t point = lead & (0x3F >> length);
    for (int k = 0; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80) return notACharacter;
        point = point << 6 | (next & 0x3F);
        ++i;
    }
    static constexpr char32_t shortest[] = {0, 0x80, 0x800, 0x10000};  // longer forms would smuggle in other bytes
    return point < shortest[length] || point > 0x10FFFF ? notACharacter : point;
}

bool inRanges(char32_t c, std::initializer_list<std::pair<char32_t, char32_t>> ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [c](const auto& range) { return c >= range.first && c <= range.second; });
}

bool isASCIILetterOrDigit(char32_t c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

// The non-ASCII characters Swift accepts at the start of an identifier.
bool isUnicodeIdentifierHead(char32_t c) {
    return inRanges(c, {{0xA8, 0xA8}, {0xAA, 0xAA}, {0xAD, 0xAD}, {0xAF, 0xAF}, {0xB2, 0xB5}, {0xB7, 0xBA}, {0xBC, 0xBE},
                        {0xC0, 0xD6}, {0xD8, 0xF6}, {0xF8, 0xFF}, {0x100, 0x2FF}, {0x370, 0x167F}, {0x1681, 0x180D},
                        {0x180F, 0x1DBF}, {0x1E00, 0x1FFF}, {0x2070, 0x20CF}, {0x2100, 0x218F}, {0x2460, 0x24FF},
                        {0x2776, 0x2793}, {0x2C00, 0x2DFF}, {0x2E80, 0x2FFF}, {0x3004, 0x3007}, {0x3021, 0x302F},
                        {0x3031, 0x303F}, {0x3040, 0xD7FF}, {0xF900, 0xFD3D}, {0xFD40, 0xFDCF}, {0xFDF0, 0xFE1F},
                        {0xFE30, 0xFE44}, {0xFE47, 0xFFFD}, {0x10000, 0x1FFFD}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD},
                        {0x40000, 0x4FFFD}, {0x50000, 0x5FFFD}, {0x60000, 0x6FFFD}, {0x70000, 0x7FFFD}, {0x80000, 0x8FFFD},
                        {0x90000, 0x9FFFD}, {0xA0000, 0xAFFFD}, {0xB0000, 0xBFFFD}, {0xC0000, 0xCFFFD}, {0xD0000, 0xDFFFD},
                        {0xE0000, 0xEFFFD}});
}

// Combining marks may follow a head but not start an identifier.
bool isUnicodeCombining(char32_t c) { return inRanges(c, {{0x300, 0x36F}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0xFE20, 0xFE2F}}); }

// The words of a name: runs of characters an identifier may hold; anything else separates them.
std::vector<std::string> words(std::string_view name) {
    std::vector<std::string> result;
    std::string word;
    for (std::size_t i = 0; i < name.size();) {
        const std::size_t start = i;
        const char32_t c = nextCodePoint(name, i);
        if (isASCIILetterOrDigit(c) || (c >= 0x80 && c != notACharacter && (isUnicodeIdentifierHead(c) || isUnicodeCombining(c)))) {
            word.append(name.substr(start, i - start));
        } else if (!word.empty()) {
            result.push_back(std::move(word));
            word.clear();
        }
    }
    if (!word.empty()) result.push_back(std::move(word));
    return result;
}

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

enum class Case { lowerCamel, upperCamel };

// "Deep water" gives deepWater or DeepWater; a first word in capitals ("RAL 3020") is lowered whole.
std::string camelCased(std::string_view name, Case style) {
    std::string out;
    const auto parts = words(name);
    for (std::size_t w = 0; w < parts.size(); ++w) {
        std::string word = parts[w];
        if (w == 0 && style == Case::lowerCamel) {
            const bool capitals = std::none_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
            if (capitals) std::transform(word.begin(), word.end(), word.begin(), lower);
            else word[0] = lower(word[0]);
        } else {
            word[0] = upper(word[0]);
        }
        out += word;
    }
    return out;
}

bool isKeyword(std::string_view word) {
    static const std::set<std::string_view> keywords = {
        "associatedtype", "class", "deinit", "enum", "extension", "fileprivate", "func", "import", "init", "inout",
        "internal", "let", "open", "operator", "private", "precedencegroup", "protocol", "public", "rethrows", "static",
        "struct", "subscript", "typealias", "var", "break", "case", "catch", "continue", "default", "defer", "do",
        "else", "fallthrough", "for", "guard", "if", "in", "repeat", "return", "throw", "switch", "where", "while",
        "as", "await", "false", "is", "nil", "self", "super", "throws", "true", "try"};
    return keywords.contains(word);
}

// The names declared in one scope: each new one is made unique with a number (deepWater, deepWater2).
class Scope {
public:
    // A type may not be called Color (it would hide SwiftUI's inside the enum), nor take a name Swift
    // reserves for metatypes and the like.
    Scope() : taken{"Any", "Color", "Protocol", "Self", "Type"} {}

    std::string identifier(std::string_view name, Case style, std::string_view fallback) {
        std::string base = camelCased(name, style);
        if (base.empty()) base = fallback;
        std::size_t first = 0;
        const char32_t head = nextCodePoint(base, first);
        if ((head >= '0' && head <= '9') || isUnicodeCombining(head)) base.insert(0, "_");
        std::string unique = base;
        for (int number = 2; taken.contains(unique); ++number) unique = base + std::to_string(number);
        taken.insert(unique);
        return isKeyword(unique) ? "`" + unique + "`" : unique;
    }

private:
    std::set<std::string> taken;
};

// Up to six decimals and at least one, so that Swift reads a Double.
std::string number(double value) {
    std::string out = textfile::fixed(value, 6);
    while (out.ends_with('0') && out[out.size() - 2] != '.') out.pop_back();
    return out;
}

std::string comment(const Color& color) {
    const std::string hex = color.hexString(ColorByteFormat::rgb, true);
    const std::string name = textfile::singleLine(textfile::trimmed(color.name));
    return name.empty() ? hex : name + " (" + hex + ")";
}

void writeColors(std::string& out, const std::vector<Color>& colors, Scope& scope, const std::string& indent) {
    for (const auto& color : colors) {
        const RGB rgb = color.rgb();
        out += indent + "/// " + comment(color) + "\n";
        out += indent + "static let " + scope.identifier(color.name, Case::lowerCamel, "color") + " = Color(.sRGB, red: " +
               number(rgb.rf) + ", green: " + number(rgb.gf) + ", blue: " + number(rgb.bf) + ", opacity: " + number(rgb.af) + ")\n";
    }
}

class SwiftCoder final : public PaletteCoder {
public:
    SwiftCoder() : PaletteCoder(PaletteFormat::swift) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader&) const override {
        logError("Swift Coder: decode() not implemented");
        throw CommonError(CommonError::Case::notImplemented);
    }

    std::string encode(const Palette& palette) const override {
        Scope colorScope;
        const std::string paletteName = textfile::singleLine(textfile::trimmed(palette.name));
        std::string out = "// Generated by Kro.\nimport SwiftUI\n\nextension Color {\n";
        if (!paletteName.empty()) out += "    /// " + paletteName + "\n";
        out += "    enum " + colorScope.identifier(palette.name, Case::upperCamel, "Palette") + " {\n";
        Scope paletteScope;
        writeColors(out, palette.colors, paletteScope, "        ");
        for (const auto& group : palette.groups) {
            const std::string groupName = textfile::singleLine(textfile::trimmed(group.name));
            out += "\n";
            if (!groupName.empty()) out += "        /// " + groupName + "\n";
            out += "        enum " + paletteScope.identifier(group.name, Case::upperCamel, "Group") + " {\n";
            Scope groupScope;
            writeColors(out, group.colors, groupScope, "            ");
            out += "        }\n";
        }
        return out + "    }\n}\n";
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSwiftCoder() { return std::make_unique<SwiftCoder>(); }

}  // namespace PAL
