#pragma once
// A whole XML document as a small tree, read with expat. The XML palette coders read a file this way
// and walk it; none of them needs streaming, and a tree keeps each coder's reading short.
// Names are kept as written ("office:color"); `localName` drops a prefix for coders that accept a
// format under any namespace prefix.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace PAL::xml {

struct Element {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;  // in document order
    std::vector<std::unique_ptr<Element>> children;
    std::string text;  // the character data directly inside this element, concatenated

    std::string_view localName() const;
    // The value of an attribute by its name as written, or by local name when `name` has no prefix.
    std::optional<std::string_view> attribute(std::string_view name) const;
    // Children whose local name is `name`, in order.
    std::vector<const Element*> childrenNamed(std::string_view name) const;
    const Element* firstChild(std::string_view name) const;
};

// Throws CommonError invalidFormat when the bytes are not well-formed XML, or nest deeper than a
// palette ever does. Entities are expanded only as far as expat's own amplification guard allows;
// no external entity is ever loaded.
std::unique_ptr<Element> parse(std::string_view bytes);

// Text escaped for an attribute value or character data.
std::string escaped(std::string_view text);

}  // namespace PAL::xml
