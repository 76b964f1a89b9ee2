#include "exchange/XmlTree.h"

#include <expat.h>

#include "exchange/PalErrors.h"

namespace PAL::xml {

namespace {

// Deeper than any palette format nests; a guard against stack use on hostile files.
constexpr std::size_t maximumDepth = 64;

std::string_view withoutPrefix(std::string_view name) {
    const auto colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

struct TreeBuilder {
    XML_Parser parser = nullptr;
    std::unique_ptr<Element> root;
    std::vector<Element*> open;
    bool tooDeep = false;

    static void started(void* data, const XML_Char* name, const XML_Char** attributes) {
        auto& self = *static_cast<TreeBuilder*>(data);
        if (self.open.size() >= maximumDepth) {
            self.tooDeep = true;
            XML_StopParser(self.parser, XML_FALSE);
            return;
        }
        auto element = std::make_unique<Element>();
        element->name = name;
        for (auto attribute = attributes; *attribute; attribute += 2) element->attributes.emplace_back(attribute[0], attribute[1]);
        Element* raw = element.get();
        if (self.open.empty()) self.root = std::move(element);
        else self.open.back()->children.push_back(std::move(element));
        self.open.push_back(raw);
    }

    static void ended(void* data, const XML_Char*) { static_cast<TreeBuilder*>(data)->open.pop_back(); }

    static void characters(void* data, const XML_Char* text, int length) {
        auto& self = *static_cast<TreeBuilder*>(data);
        if (!self.open.empty()) self.open.back()->text.append(text, static_cast<std::size_t>(length));
    }
};

}  // namespace

std::string_view Element::localName() const { return withoutPrefix(name); }

std::optional<std::string_view> Element::attribute(std::string_view wanted) const {
    const bool byLocalName = wanted.find(':') == std::string_view::npos;
    for (const auto& [key, value] : attributes)
        if (key == wanted || (byLocalName && withoutPrefix(key) == wanted)) return std::string_view(value);
    return std::nullopt;
}

std::vector<const Element*> Element::childrenNamed(std::string_view wanted) const {
    std::vector<const Element*> out;
    for (const auto& child : children)
        if (child->localName() == wanted) out.push_back(child.get());
    return out;
}

const Element* Element::firstChild(std::string_view wanted) const {
    for (const auto& child : children)
        if (child->localName() == wanted) return child.get();
    return nullptr;
}

std::unique_ptr<Element> parse(std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(INT32_MAX)) throw CommonError(CommonError::Case::invalidFormat);
    TreeBuilder builder;
    builder.parser = XML_ParserCreate(nullptr);
    if (!builder.parser) throw CommonError(CommonError::Case::invalidFormat);
    XML_SetUserData(builder.parser, &builder);
    XML_SetElementHandler(builder.parser, &TreeBuilder::started, &TreeBuilder::ended);
    XML_SetCharacterDataHandler(builder.parser, &TreeBuilder::characters);
    const bool parsed = XML_Parse(builder.parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == XML_STATUS_OK;
    XML_ParserFree(builder.parser);
    if (!parsed || builder.tooDeep || !builder.root) throw CommonError(CommonError::Case::invalidFormat);
    return std::move(builder.root);
}

std::string escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&apos;"; break;
        case '\n': out += "&#10;"; break;
        case '\r': out += "&#13;"; break;
        case '\t': out += "&#9;"; break;
        default:
            // XML 1.0 cannot hold the other control characters at all.
            if (static_cast<unsigned char>(c) >= 0x20) out.push_back(c);
        }
    }
    return out;
}

}  // namespace PAL::xml
