// Legacy Adobe colour books (.acbl): XML. The root "AdobeSwatchbook" carries a version, one
// "Format" element names the channel count and colour space, and each "Sp" swatch holds its
// component values as space-separated numbers in a "C" element. Read only.
#include <expat.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

namespace {

// Empty when absent, which no attribute read here accepts anyway.
std::string_view attribute(const XML_Char** attributes, std::string_view key) {
    for (size_t i = 0; attributes[i]; i += 2)
        if (key == attributes[i]) return attributes[i + 1];
    return {};
}

template <typename Number>
std::optional<Number> parsed(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// The parsing state of one document.
class ACBL {
public:
    struct CurrentColor {
        std::string name;
        std::vector<double> components;
    };

    // Throws CommonError: invalidFormat for a document that is not a colour book.
    Palette parse(std::string_view document) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        if (!parser) throw CommonError(CommonError::Case::invalidFormat);
        this->parser = parser;
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &ACBL::started, &ACBL::ended);
        XML_SetCharacterDataHandler(parser, &ACBL::text);
        const bool parsedWhole = document.size() <= INT_MAX &&
                                 XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK;
        XML_ParserFree(parser);
        if (failure) throw *failure;
        if (!parsedWhole || !isValidFormat) throw CommonError(CommonError::Case::invalidFormat);
        palette.format = format;
        return std::move(palette);
    }

    const PaletteFormat format = PaletteFormat::acbl;
    const std::string name = "Adobe Color Book (Legacy)";
    const std::string fileExtension = "acbl";
    Palette palette;
    bool isValidFormat = false;
    CurrentColor currentColor;
    int channelCount = 0;
    std::optional<ColorSpace> colorspace;
    bool isInColorComponents = false;

private:
    void stop(std::optional<CommonError> error = std::nullopt) {
        failure = std::move(error);
        XML_StopParser(parser, XML_FALSE);
    }

    void didStart(std::string_view element, const XML_Char** attributes) {
        if (element == "AdobeSwatchbook") {
            isValidFormat = parsed<int>(attribute(attributes, "Version")).has_value();
            if (!isValidFormat) stop();
        } else if (element == "Format") {
            const auto channels = parsed<int>(attribute(attributes, "Channels"));
            const auto space = colorSpaceFromText(attribute(attributes, "ColorSpace"));
            if (!channels || !space) return stop();
            channelCount = *channels;
            colorspace = space;
        } else if (element == "Sp") {
            currentColor = {};
        } else if (element == "C") {
            isInColorComponents = true;
            componentText.clear();
        }
    }

    // The text of a "C" may arrive in pieces, so it is taken whole when the element closes.
    void didEnd(std::string_view element) {
        if (element == "C") {
            std::vector<double> values;
            for (size_t start = 0; start <= componentText.size();) {
                const size_t end = std::min(componentText.find(' ', start), componentText.size());
                if (const auto value = parsed<double>(std::string_view(componentText).substr(start, end - start)))
                    values.push_back(std::clamp(*value, 0.0, 1.0));
                start = end + 1;
            }
            if (values.size() == static_cast<size_t>(channelCount)) currentColor.components = std::move(values);
            isInColorComponents = false;
        } else if (element == "Sp" && colorspace) {
            if (currentColor.components.size() != static_cast<size_t>(componentCount(*colorspace)))
                return stop(CommonError(CommonError::Case::invalidColorComponentCountForModelType));
            palette.colors.emplace_back(*colorspace, currentColor.components, 1.0, currentColor.name);
        }
    }

    static void started(void* self, const XML_Char* element, const XML_Char** attributes) {
        static_cast<ACBL*>(self)->didStart(element, attributes);
    }
    static void ended(void* self, const XML_Char* element) { static_cast<ACBL*>(self)->didEnd(element); }
    static void text(void* self, const XML_Char* characters, int length) {
        auto* state = static_cast<ACBL*>(self);
        if (state->isInColorComponents) state->componentText.append(characters, static_cast<size_t>(length));
    }

    XML_Parser parser = nullptr;
    std::string componentText;
    std::optional<CommonError> failure;
};

class ACBLCoder final : public PaletteCoder {
public:
    ACBLCoder() : PaletteCoder(PaletteFormat::acbl) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        return ACBL().parse(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }
    // No write path, and no message: the format is only ever read.
};

}  // namespace

std::unique_ptr<PaletteCoder> makeACBLCoder() { return std::make_unique<ACBLCoder>(); }

}  // namespace PAL
