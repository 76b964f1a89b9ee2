#pragma once
// The interface of every gradient coder, and the frame that picks one for a file. It mirrors the
// palette coders' frame: a coder decodes a whole file from a byte stream and encodes a whole file.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PaletteFormat.h"
#include "exchange/gradients/Gradient.h"

namespace BytesParser {
class BytesReader;
}

namespace PAL {

// A small value with no shared mutable state: made, used, dropped.
class GradientsCoder {
public:
    explicit GradientsCoder(GradientsFormat format) : format_(format) {}
    virtual ~GradientsCoder() = default;

    GradientsFormat format() const { return format_; }
    std::string name() const;
    // Lowercase, most preferred first.
    std::vector<std::string> fileExtension() const;
    // Every gradient coder is built, so these are the format's own sides.
    bool reads() const;
    bool writes() const;

    // Every gradient in the file, each normalised (Gradient::normalize) and with at least one stop.
    // Any error means "not mine". Default (formats that cannot be read): logs and throws CommonError
    // notImplemented.
    virtual Gradients decode(BytesParser::BytesReader& reader) const;
    Gradients decode(std::string_view data) const;
    // Throws CommonError unableToLoadFile when the file will not open.
    Gradients decodeFile(const std::string& path) const;
    // The file's bytes. Default (formats that cannot be written): logs and throws CommonError notImplemented.
    virtual std::string encode(const Gradients& gradients) const;

private:
    GradientsFormat format_;
};

// A fresh coder for a format.
std::unique_ptr<GradientsCoder> coder(GradientsFormat format);
// One coder per format, in case order; made once, shared, read-only.
const std::vector<std::unique_ptr<GradientsCoder>>& allGradientsCoders();
// Coders whose extensions hold `extension` (compared lowercased), in case order.
std::vector<const GradientsCoder*> gradientsCoders(std::string_view extension);

// With a coder, that coder alone is tried; otherwise every coder for the extension in case order, the
// first that decodes winning. Throws CommonError unsupportedCoderType when no coder takes the extension,
// unsupportedPaletteType when all refused, unableToLoadFile when the file will not open. A file's single
// unnamed gradient is named after the file.
Gradients decodeGradients(const std::string& path, const GradientsCoder* coder = nullptr);
Gradients decodeGradients(std::string_view data, std::string_view fileExtension);

}  // namespace PAL
