// AutoCAD colour books (.acb): XML, <colorBook> with a <bookName> and <colorPage>s of up to ten
// <colorEntry>s, each a <colorName> and an <RGB8> of 0-255 integers. Pages have no names; each is a
// group, "Page N". Adobe's binary colour books share the extension: they start with "8BCB" and are
// refused here (their own coder is tried first). The books Autodesk ships hide their values in
// <RGB8Encrypt>, whose encoding is not public: such entries cannot be read.
#include <algorithm>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/XmlCoderSupport.h"

namespace PAL {

namespace {

using xml::firstChildIgnoringCase;

constexpr std::string_view adobeSignature = "8BCB";
// AutoCAD shows at most ten colours on a page.
constexpr std::size_t pageSize = 10;

std::optional<double> channel(const xml::Element& rgb, std::string_view name) {
    const xml::Element* value = firstChildIgnoringCase(rgb, name);
    if (!value) return std::nullopt;
    const auto number = xml::numberText(value->text);
    if (!number) return std::nullopt;
    return std::clamp(std::round(*number), 0.0, 255.0);
}

std::optional<Color> entryColor(const xml::Element& entry) {
    const xml::Element* rgb = firstChildIgnoringCase(entry, "RGB8");
    if (!rgb) return std::nullopt;
    const auto r = channel(*rgb, "red"), g = channel(*rgb, "green"), b = channel(*rgb, "blue");
    if (!r || !g || !b) return std::nullopt;
    const xml::Element* name = firstChildIgnoringCase(entry, "colorName");
    return Color::rgb255(*r, *g, *b, 255, name ? std::string(xml::trimmedText(name->text)) : std::string());
}

std::string rgb8(const Color& color) {
    const RGB c = color.rgb();
    const auto byte = [](double unit) { return std::to_string(std::lround(unit * 255)); };
    return "<RGB8><red>" + byte(c.rf) + "</red><green>" + byte(c.gf) + "</green><blue>" + byte(c.bf) + "</blue></RGB8>";
}

class AutodeskColorBookCoder final : public PaletteCoder {
public:
    AutodeskColorBookCoder() : PaletteCoder(PaletteFormat::autodeskColorBook) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        const std::string_view data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        if (data.starts_with(adobeSignature)) throw CommonError(CommonError::Case::invalidFormat);
        const auto document = xml::parseDocument(data);
        if (!xml::equalsIgnoringCase(document->localName(), "colorBook")) throw CommonError(CommonError::Case::invalidFormat);

        const xml::Element* bookName = firstChildIgnoringCase(*document, "bookName");
        Palette palette(bookName ? std::string(xml::trimmedText(bookName->text)) : std::string());
        palette.format = PaletteFormat::autodeskColorBook;
        std::size_t unreadable = 0, pageNumber = 0;
        for (const xml::Element* page : xml::childrenIgnoringCase(*document, "colorPage")) {
            Group group("Page " + std::to_string(++pageNumber));
            for (const xml::Element* entry : xml::childrenIgnoringCase(*page, "colorEntry")) {
                if (auto color = entryColor(*entry)) group.colors.push_back(std::move(*color));
                else ++unreadable;
            }
            if (!group.colors.empty()) palette.groups.push_back(std::move(group));
        }
        if (unreadable > 0) {
            logError(formatLogMessage("AutodeskColorBookCoder: %d colours without readable RGB8 values (encrypted books cannot be read)",
                                      {std::to_string(unreadable)}));
            if (palette.groups.empty()) throw CommonError(CommonError::Case::invalidFormat);
        }
        return palette;
    }

    // Every group starts a page and fills as many as it needs; the page colour shown on AutoCAD's
    // page slider is the page's first colour. Names are AutoCAD's keys, so they are made unique.
    std::string encode(const Palette& palette) const override {
        std::string out = std::string(xml::declarationUTF8) + "<colorBook>\n  <bookName>" + xml::escaped(palette.name) +
                          "</bookName>\n  <majorVersion>1</majorVersion>\n  <minorVersion>0</minorVersion>\n";
        UniqueNames names;
        const auto writePages = [&](const std::vector<Color>& colors) {
            for (std::size_t first = 0; first < colors.size(); first += pageSize) {
                out += "  <colorPage>\n    <pageColor>\n      " + rgb8(colors[first]) + "\n    </pageColor>\n";
                for (std::size_t i = first; i < std::min(first + pageSize, colors.size()); ++i)
                    out += "    <colorEntry>\n      <colorName>" + xml::escaped(names.take(colors[i])) + "</colorName>\n      " +
                           rgb8(colors[i]) + "\n    </colorEntry>\n";
                out += "  </colorPage>\n";
            }
        };
        writePages(palette.colors);
        for (const auto& group : palette.groups) writePages(group.colors);
        return out + "</colorBook>\n";
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeAutodeskColorBookCoder() { return std::make_unique<AutodeskColorBookCoder>(); }

}  // namespace PAL
