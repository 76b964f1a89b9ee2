#include "exchange/coders/JSONCoder.h"

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace PAL {

Palette JSONCoder::decode(BytesParser::BytesReader& reader) const {
    const auto bytes = reader.readAll();
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const auto json = kro::Json::parse(text, nullptr, false);
    if (json.is_discarded()) throw CommonError(CommonError::Case::invalidFormat);
    Palette palette = Palette::fromJson(json);
    palette.format = PaletteFormat::json;
    return palette;
}

std::string JSONCoder::encode(const Palette& palette) const {
    // Text that is not UTF-8 is written with replacement characters rather than refused.
    const auto handler = kro::Json::error_handler_t::replace;
    return prettyPrint ? palette.json().dump(2, ' ', false, handler) + "\n" : palette.json().dump(-1, ' ', false, handler);
}

std::unique_ptr<PaletteCoder> makeJSONCoder() { return std::make_unique<JSONCoder>(); }

}  // namespace PAL
