#pragma once
// What the XML palette coders share: the document read from a stream, names and text compared the
// way the formats' own programs compare them, and the names a format needs unique and non-empty.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "exchange/PalColor.h"
#include "exchange/XmlTree.h"

namespace BytesParser {
class BytesReader;
}

namespace PAL::xml {

// A whole document; white space before the XML declaration, which some generators leave, is
// skipped (as is a UTF-8 byte-order mark). Throws CommonError invalidFormat.
std::unique_ptr<Element> parseDocument(std::string_view bytes);
// The rest of the stream as one document.
std::unique_ptr<Element> readDocument(BytesParser::BytesReader& reader);

bool equalsIgnoringCase(std::string_view a, std::string_view b);
// By name as written, letters in any case; the first match.
std::optional<std::string_view> attributeIgnoringCase(const Element& element, std::string_view name);
// Children whose local name matches in any case, in order.
std::vector<const Element*> childrenIgnoringCase(const Element& element, std::string_view localName);
const Element* firstChildIgnoringCase(const Element& element, std::string_view localName);

// Without XML white space (space, tab, CR, LF) around it: element text is often indented.
std::string_view trimmedText(std::string_view text);
// A decimal number with white space around it allowed; nullopt otherwise.
std::optional<double> numberText(std::string_view text);

// ` key="value"`, the value escaped: one attribute as a writer appends it to an element.
std::string attributeText(std::string_view key, std::string_view value);

// An XML declaration, as every XML writer here starts its file.
inline constexpr std::string_view declarationUTF8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

}  // namespace PAL::xml

namespace PAL {

// Hands out names unique within one file. A name already taken gets `separator` and 2, 3, ...;
// an empty one is first replaced by the colour's hex digits ("1a6597"), the form of the names in the
// swatch files Scribus ships for unnamed colours.
class UniqueNames {
public:
    explicit UniqueNames(std::string separator = " ") : separator_(std::move(separator)) {}

    // A name no colour may get, such as one the format reserves.
    void reserve(std::string name) { taken_.insert(std::move(name)); }
    std::string take(std::string name);
    std::string take(const Color& color);

private:
    std::string separator_;
    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, int> nextSuffix_;  // so that many equal names stay linear
};

}  // namespace PAL
