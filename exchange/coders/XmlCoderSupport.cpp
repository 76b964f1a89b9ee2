#include "exchange/coders/XmlCoderSupport.h"

#include <cctype>

#include "exchange/BytesReader.h"
#include "exchange/coders/TextSupport.h"

namespace PAL::xml {

std::unique_ptr<Element> parseDocument(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const auto start = bytes.find_first_not_of(" \t\r\n");
    return parse(start == std::string_view::npos ? std::string_view() : bytes.substr(start));
}

std::unique_ptr<Element> readDocument(BytesParser::BytesReader& reader) {
    const auto bytes = reader.readAll();
    return parseDocument(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && textfile::startsWithIgnoringCase(a, b);
}

std::optional<std::string_view> attributeIgnoringCase(const Element& element, std::string_view name) {
    for (const auto& [key, value] : element.attributes)
        if (equalsIgnoringCase(key, name)) return std::string_view(value);
    return std::nullopt;
}

std::vector<const Element*> childrenIgnoringCase(const Element& element, std::string_view localName) {
    std::vector<const Element*> out;
    for (const auto& child : element.children)
        if (equalsIgnoringCase(child->localName(), localName)) out.push_back(child.get());
    return out;
}

const Element* firstChildIgnoringCase(const Element& element, std::string_view localName) {
    for (const auto& child : element.children)
        if (equalsIgnoringCase(child->localName(), localName)) return child.get();
    return nullptr;
}

std::string_view trimmedText(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<double> numberText(std::string_view text) { return textfile::number(trimmedText(text)); }

std::string attributeText(std::string_view key, std::string_view value) {
    return " " + std::string(key) + "=\"" + escaped(value) + "\"";
}

}  // namespace PAL::xml

namespace PAL {

std::string UniqueNames::take(std::string name) {
    if (taken_.insert(name).second) return name;
    int& suffix = nextSuffix_.try_emplace(name, 2).first->second;
    for (;; ++suffix) {
        std::string candidate = name + separator_ + std::to_string(suffix);
        if (taken_.insert(candidate).second) {
            ++suffix;
            return candidate;
        }
    }
}

std::string UniqueNames::take(const Color& color) {
    return take(textfile::trimmed(color.name).empty() ? color.hexString() : color.name);
}

}  // namespace PAL
