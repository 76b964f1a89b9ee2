#include "exchange/coders/JSONPaletteWriter.h"

#include <array>
#include <cmath>
#include <span>

#include "platform/Json.h"

namespace PAL {

namespace {

// Text that goes out as it stands: UTF-8 with nothing to escape.
bool isPlainText(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            if (lead < 0x20 || lead == '"' || lead == '\\') return false;
            ++i;
            continue;
        }
        std::size_t length;
        char32_t c;
        if ((lead & 0xE0) == 0xC0) length = 2, c = lead & 0x1F;
        else if ((lead & 0xF0) == 0xE0) length = 3, c = lead & 0x0F;
        else if ((lead & 0xF8) == 0xF0) length = 4, c = lead & 0x07;
        else return false;
        if (i + length > text.size()) return false;
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) return false;
            c = (c << 6) | (next & 0x3F);
        }
        static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < smallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return false;
        i += length;
    }
    return true;
}

class Writer {
public:
    Writer(std::string& out, bool pretty) : out(out), pretty(pretty) {}

    void palette(const Palette& palette) {
        out += '{';
        key("name", 1, true);
        string(palette.name);
        key("colors", 1, false);
        colors(palette.colors, 1);
        key("groups", 1, false);
        list(palette.groups, 1, [&](const Group& group, int level) {
            out += '{';
            key("name", level + 1, true);
            string(group.name);
            key("colors", level + 1, false);
            colors(group.colors, level + 1);
            close('}', level);
        });
        close('}', 0);
        if (pretty) out += '\n';
    }

private:
    void colors(const std::vector<Color>& colors, int level) {
        list(colors, level, [&](const Color& color, int colorLevel) {
            const int fieldLevel = colorLevel + 1;
            out += '{';
            bool first = true;
            if (!color.name.empty()) {
                key("name", fieldLevel, first);
                string(color.name);
                first = false;
            }
            key("colorSpace", fieldLevel, first);
            string(text(color.colorSpace));
            key("colorComponents", fieldLevel, false);
            list(color.colorComponents, fieldLevel, [&](double component, int) { number(component); });
            if (color.colorType != ColorType::global) {
                key("colorType", fieldLevel, false);
                string(text(color.colorType));
            }
            if (color.alpha != 1.0) {
                key("alpha", fieldLevel, false);
                number(color.alpha);
            }
            close('}', colorLevel);
        });
    }

    template <typename Items, typename WriteItem>
    void list(const Items& items, int level, WriteItem writeItem) {
        if (items.empty()) {
            out += "[]";
            return;
        }
        out += '[';
        bool first = true;
        for (const auto& item : items) {
            if (!first) out += ',';
            first = false;
            newLine(level + 1);
            writeItem(item, level + 1);
        }
        close(']', level);
    }

    void key(std::string_view name, int level, bool first) {
        if (!first) out += ',';
        newLine(level);
        out += '"';
        out += name;
        out += pretty ? "\": " : "\":";
    }

    void close(char bracket, int level) {
        newLine(level);
        out += bracket;
    }

    void newLine(int level) {
        if (!pretty) return;
        out += '\n';
        out.append(static_cast<std::size_t>(level) * 2, ' ');
    }

    void string(std::string_view text) {
        if (!isPlainText(text)) {
            // Escapes and replacement characters exactly as the tree writes them.
            out += kro::Json(std::string(text)).dump(-1, ' ', false, kro::Json::error_handler_t::replace);
            return;
        }
        out += '"';
        out += text;
        out += '"';
    }

    void number(double value) {
        if (!std::isfinite(value)) {
            out += "null";
            return;
        }
        std::array<char, 64> digits{};
        const char* end = nlohmann::detail::to_chars(digits.data(), digits.data() + digits.size(), value);
        out.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
    }

    std::string& out;
    const bool pretty;
};

}  // namespace

std::string writeJSONPalette(const Palette& palette, bool prettyPrint) {
    std::string out;
    // About what a pretty colour takes; the compact form needs less.
    out.reserve(64 + palette.totalColorCount() * (prettyPrint ? 200 : 110));
    Writer(out, prettyPrint).palette(palette);
    return out;
}

}  // namespace PAL
