#pragma once
// The interface of every palette coder, and the frame's operations that pick a coder for a file.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalPalette.h"
#include "exchange/PaletteFormat.h"

namespace BytesParser {
class BytesReader;
}

namespace PAL {

// A coder is a small value with no shared mutable state: made, used, dropped. Bytes are held in a
// std::string, as files are read and written everywhere else.
class PaletteCoder {
public:
    explicit PaletteCoder(PaletteFormat format) : format_(format) {}
    virtual ~PaletteCoder() = default;

    PaletteFormat format() const { return format_; }
    virtual std::string name() const;
    // Lowercase, most preferred first.
    virtual std::vector<std::string> fileExtension() const;
    virtual std::string utType() const;
    // Whether this build reads and writes the format (false for the sides the format lacks, and
    // for coders that are not built yet).
    virtual bool reads() const;
    virtual bool writes() const;

    // The one operation a coder writes: a whole palette from a byte stream. Any error means "not mine".
    // Default: logs nothing and throws CommonError notImplemented.
    virtual Palette decode(BytesParser::BytesReader& reader) const;
    Palette decode(std::string_view data) const;
    // Throws CommonError unableToLoadFile when the file will not open.
    Palette decodeFile(const std::string& path) const;
    // The file's bytes. Default: throws CommonError notImplemented.
    virtual std::string encode(const Palette& palette) const;

private:
    PaletteFormat format_;
};

// A fresh coder with default settings for a format.
std::unique_ptr<PaletteCoder> coder(PaletteFormat format);
// One coder per format, in case order; made once, shared, read-only.
const std::vector<std::unique_ptr<PaletteCoder>>& allCoders();
// The 17 coders that take plain text, in their own order; made once.
const std::vector<std::unique_ptr<PaletteCoder>>& textCoders();

// Coders whose extensions hold `extension` (compared lowercased), in case order.
std::vector<const PaletteCoder*> coders(std::string_view extension);
std::vector<const PaletteCoder*> codersForPath(const std::string& path);
// The first coder whose first extension equals the type's preferred extension; nullptr when none.
const PaletteCoder* coderForUTType(std::string_view utType);

// With a coder, that coder alone is tried; otherwise every coder for the file's extension in case
// order, the first that decodes winning. Throws unsupportedCoderType when no coder takes the
// extension and unsupportedPaletteType when all refused; unableToLoadFile when the file will not open.
Palette decode(const std::string& path, const PaletteCoder* coder = nullptr);
Palette decode(std::string_view data, std::string_view fileExtension);
// The trial itself over a given list of candidates, with the same two errors.
Palette decodeTrying(const std::vector<const PaletteCoder*>& candidates, std::string_view data);

}  // namespace PAL
