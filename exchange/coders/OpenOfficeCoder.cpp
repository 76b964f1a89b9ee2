// OpenOffice and LibreOffice colour tables (.soc): <draw:color draw:name="..." draw:color="#rrggbb"/>
// under a color-table root. Both generations of the format are read (the OpenOffice.org 1.x
// "office:" root that most shipped tables still use, and the "ooo:" root LibreOffice writes) by
// local names, so any namespace prefix does. We write LibreOffice's own layout.
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/coders/XmlCoderSupport.h"

namespace PAL {

namespace {

constexpr std::string_view rootStart =
    "<ooo:color-table xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\" "
    "xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
    "xmlns:svg=\"http://www.w3.org/2000/svg\" xmlns:ooo=\"http://openoffice.org/2004/office\">\n";
constexpr std::string_view rootEnd = "</ooo:color-table>\n";

// Exactly '#' and six hex digits: LibreOffice turns anything else into black, which we do not copy.
bool isColorValue(std::string_view value) {
    return value.size() == 7 && value.front() == '#' && textfile::isHexDigits(value.substr(1));
}

class OpenOfficeCoder final : public PaletteCoder {
public:
    OpenOfficeCoder() : PaletteCoder(PaletteFormat::openOffice) {}
    using PaletteCoder::decode;

    // Entries with an empty name, which LibreOffice drops, and repeated names, where LibreOffice
    // keeps the last, are all kept: nothing in the file is lost.
    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto document = xml::readDocument(reader);
        if (document->localName() != "color-table") throw CommonError(CommonError::Case::invalidFormat);
        Palette palette;
        palette.format = PaletteFormat::openOffice;
        for (const xml::Element* entry : document->childrenNamed("color")) {
            const std::string name(entry->attribute("name").value_or(""));
            const auto value = xml::trimmedText(entry->attribute("color").value_or(""));
            if (isColorValue(value)) palette.colors.push_back(Color::hex(value, ColorByteFormat::rgb, name));
            else logInfo(formatLogMessage("OpenOfficeCoder: skipped %@, whose value %@ is not #rrggbb", {name, std::string(value)}));
        }
        return palette;
    }

    // Names are the table's keys in LibreOffice, so each is made unique and non-empty.
    std::string encode(const Palette& palette) const override {
        std::string out = std::string(xml::declarationUTF8) + std::string(rootStart);
        UniqueNames names;
        for (const auto& color : palette.eachColor())
            out += "  <draw:color" + xml::attributeText("draw:name", names.take(color)) +
                   xml::attributeText("draw:color", color.hexString(ColorByteFormat::rgb, true)) + "/>\n";
        return out + std::string(rootEnd);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeOpenOfficeCoder() { return std::make_unique<OpenOfficeCoder>(); }

}  // namespace PAL
