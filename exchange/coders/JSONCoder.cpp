#include "exchange/coders/JSONCoder.h"

#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/JSONPaletteReader.h"
#include "exchange/coders/JSONPaletteWriter.h"

namespace PAL {

Palette JSONCoder::decode(BytesParser::BytesReader& reader) const {
    const auto bytes = reader.readRemaining();
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    Palette palette = readJSONPalette(text);
    palette.format = PaletteFormat::json;
    return palette;
}

std::string JSONCoder::encode(const Palette& palette) const { return writeJSONPalette(palette, prettyPrint); }

std::unique_ptr<PaletteCoder> makeJSONCoder() { return std::make_unique<JSONCoder>(); }

}  // namespace PAL
