// Android colour resources (res/values/colors.xml): <color name="...">#AARRGGBB</color> under
// <resources>. Alpha comes first, unlike CSS. Reading takes the four hex forms Android's resource
// compiler takes and resolves @color/ references within the file; writing gives names Android
// accepts as resource identifiers.
#include "exchange/coders/AndroidXMLCoder.h"

#include <cctype>
#include <unordered_map>

#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/XmlCoderSupport.h"

namespace PAL {

namespace {

constexpr std::string_view colorReference = "@color/";

struct Entry {
    std::string name;
    std::string_view value;
};

// "#RGB", "#ARGB", "#RRGGBB" or "#AARRGGBB"; anything else that starts with '#' is a broken value,
// which Android's build also refuses.
Color parsedValue(std::string_view value, std::string name) {
    const auto digits = value.substr(1);
    if (!textfile::isHexDigits(digits) || (digits.size() != 3 && digits.size() != 4 && digits.size() != 6 && digits.size() != 8))
        throw CommonError(CommonError::Case::invalidARGBHexString, std::string(value));
    return Color::hex(digits, ColorByteFormat::argb, std::move(name));
}

// The value an entry stands for after following @color/ references through the file; nullopt
// for references that leave the file (@android:color/...) or go round in a circle.
std::optional<std::string_view> resolved(const Entry& entry, const std::unordered_map<std::string_view, std::string_view>& byName) {
    std::string_view value = entry.value;
    for (std::size_t hops = 0; value.starts_with(colorReference); ++hops) {
        const auto target = byName.find(value.substr(colorReference.size()));
        if (target == byName.end() || hops > byName.size()) return std::nullopt;
        value = target->second;
    }
    if (!value.starts_with('#')) return std::nullopt;
    return value;
}

// Letters, digits and '_' only, not starting with a digit; one '_' for each character that is not
// allowed (a multi-byte UTF-8 character counts once).
std::string resourceName(std::string_view name, std::size_t position) {
    std::string out;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if ((c & 0xC0) == 0x80) continue;
        out.push_back(std::isalnum(c) && c < 0x80 ? static_cast<char>(c) : '_');
    }
    if (out.empty()) return "color_" + std::to_string(position);
    if (std::isdigit(static_cast<unsigned char>(out.front()))) out.insert(0, "_");
    return out;
}

}  // namespace

Palette AndroidXMLCoder::decode(BytesParser::BytesReader& reader) const {
    const auto document = xml::readDocument(reader);
    if (document->name != "resources") throw CommonError(CommonError::Case::invalidFormat);

    std::vector<Entry> entries;
    for (const auto& child : document->children) {
        const bool isColor = child->name == "color" || (child->name == "item" && child->attribute("type") == "color");
        if (!isColor) continue;  // strings, dimensions and the like share the file
        entries.push_back({std::string(child->attribute("name").value_or("")), xml::trimmedText(child->text)});
    }
    std::unordered_map<std::string_view, std::string_view> byName;
    for (const auto& entry : entries) byName.emplace(entry.name, entry.value);

    Palette palette;
    palette.format = PaletteFormat::androidXML;
    for (const auto& entry : entries) {
        if (const auto value = resolved(entry, byName)) palette.colors.push_back(parsedValue(*value, entry.name));
        else logInfo(formatLogMessage("AndroidXMLCoder: skipped %@, whose value %@ is not a colour in this file", {entry.name, std::string(entry.value)}));
    }
    if (palette.colors.empty()) throw CommonError(CommonError::Case::invalidFormat);
    return palette;
}

std::string AndroidXMLCoder::encode(const Palette& palette) const {
    std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<resources>\n";
    UniqueNames names("_");
    std::size_t position = 0;
    for (const auto& color : palette.eachColor()) {
        const bool withAlpha = includeAlphaDuringExport && color.alpha < 1;
        const std::string value = color.hexString(withAlpha ? ColorByteFormat::argb : ColorByteFormat::rgb, true, true);
        out += "    <color" + xml::attributeText("name", names.take(resourceName(color.name, ++position))) + ">" + value + "</color>\n";
    }
    return out + "</resources>\n";
}

std::unique_ptr<PaletteCoder> makeAndroidXMLCoder() { return std::make_unique<AndroidXMLCoder>(); }

}  // namespace PAL
