#include "exchange/PaletteCoder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "platform/Files.h"

namespace PAL {

namespace {

std::string lowercased(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

std::string readFile(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw CommonError(CommonError::Case::unableToLoadFile);
    std::ifstream file(path, std::ios::binary);
    if (!file) throw CommonError(CommonError::Case::unableToLoadFile);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) throw CommonError(CommonError::Case::unableToLoadFile);
    return bytes;
}

// A palette file as each coder tried reads it: a regular file from the disk as it is decoded, anything else
// (a pipe) read whole once. Throws unableToLoadFile when it will not open.
class PaletteFile {
public:
    explicit PaletteFile(std::string path) : path_(std::move(path)) {
        if (!BytesParser::FileSource::open(path_)) bytes_ = readFile(path_);
    }

    Palette decode(const PaletteCoder& coder) const {
        if (bytes_) return coder.decode(std::string_view(*bytes_));
        auto source = BytesParser::FileSource::open(path_);
        if (!source) throw CommonError(CommonError::Case::unableToLoadFile);
        BytesParser::BytesReader reader(std::move(source));
        return coder.decode(reader);
    }

private:
    std::string path_;
    std::optional<std::string> bytes_;
};

// The first coder that decodes wins; every refusal is dropped, since a refusal only means "not mine".
template <typename Decode>
Palette decodeWithFirstTaker(const std::vector<const PaletteCoder*>& candidates, Decode decodeWith) {
    if (candidates.empty()) throw CommonError(CommonError::Case::unsupportedCoderType);
    for (const PaletteCoder* candidate : candidates) {
        try {
            return decodeWith(*candidate);
        } catch (const std::exception&) {
        }
    }
    throw CommonError(CommonError::Case::unsupportedPaletteType);
}

}  // namespace

std::string PaletteCoder::name() const { return std::string(info(format_).displayName); }

std::vector<std::string> PaletteCoder::fileExtension() const {
    const auto& extensions = info(format_).extensions;
    return {extensions.begin(), extensions.end()};
}

std::string PaletteCoder::utType() const { return std::string(info(format_).utType); }
bool PaletteCoder::reads() const { return info(format_).reads; }
bool PaletteCoder::writes() const { return info(format_).writes; }

Palette PaletteCoder::decode(BytesParser::BytesReader&) const { throw CommonError(CommonError::Case::notImplemented); }

Palette PaletteCoder::decode(std::string_view data) const {
    auto reader = BytesParser::BytesReader::viewing(data);
    return decode(reader);
}

Palette PaletteCoder::decodeFile(const std::string& path) const { return PaletteFile(path).decode(*this); }

std::string PaletteCoder::encode(const Palette&) const { throw CommonError(CommonError::Case::notImplemented); }

std::unique_ptr<PaletteCoder> coder(PaletteFormat format) {
    switch (format) {
    case PaletteFormat::acb: return makeACBCoder();
    case PaletteFormat::acbl: return makeACBLCoder();
    case PaletteFormat::aco: return makeACOCoder();
    case PaletteFormat::act: return makeACTCoder();
    case PaletteFormat::ase: return makeASECoder();
    case PaletteFormat::clr: return makeCLRCoder();
    case PaletteFormat::riff: return makeRIFFCoder();
    case PaletteFormat::vga24bit: return makeVGA24BitCoder();
    case PaletteFormat::vga18bit: return makeVGA18BitCoder();
    case PaletteFormat::clipStudioPaint: return makeClipStudioPaintCoder();
    case PaletteFormat::corelPalette: return makeCorelPaletteCoder();
    case PaletteFormat::xara: return makeXaraCoder();
    case PaletteFormat::afpalette: return makeAffinityPaletteCoder();
    case PaletteFormat::dcp: return makeDCPCoder();
    case PaletteFormat::clf: return makeCLFCoder();
    case PaletteFormat::gimp: return makeGIMPCoder();
    case PaletteFormat::json: return makeJSONCoder();
    case PaletteFormat::swatches: return makeSwatchesCoder();
    case PaletteFormat::swatchbooker: return makeSwatchBookerCoder();
    case PaletteFormat::paintShopPro: return makePaintShopProCoder();
    case PaletteFormat::paintNET: return makePaintNETCoder();
    case PaletteFormat::corelPainter: return makeCorelPainterCoder();
    case PaletteFormat::corelDrawV3: return makeCorelDrawV3Coder();
    case PaletteFormat::hpl: return makeHomeSiteCoder();
    case PaletteFormat::skencil: return makeSkencilCoder();
    case PaletteFormat::skp: return makeSKPCoder();
    case PaletteFormat::koffice: return makeKDEPaletteCoder();
    case PaletteFormat::hexRGBA: return makeHexRGBACoder();
    case PaletteFormat::rgb: return makeRGBTextCoder();
    case PaletteFormat::rgba: return makeRGBATextCoder();
    case PaletteFormat::csv: return makeCSVCoder();
    case PaletteFormat::image: return makeImageCoder();
    case PaletteFormat::svg: return makeSVGCoder();
    case PaletteFormat::swift: return makeSwiftCoder();
    case PaletteFormat::androidXML: return makeAndroidXMLCoder();
    case PaletteFormat::basicXML: return makeBasicXMLCoder();
    case PaletteFormat::corelDraw: return makeCorelDrawCoder();
    case PaletteFormat::scribusXML: return makeScribusXMLCoder();
    case PaletteFormat::openOffice: return makeOpenOfficeCoder();
    case PaletteFormat::autodeskColorBook: return makeAutodeskColorBookCoder();
    case PaletteFormat::sketch: return makeSketchCoder();
    case PaletteFormat::simplePalette: return makeSimplePaletteCoder();
    }
    // Every format has its case above (the compiler checks); only a value outside the enumeration ends here.
    throw CommonError(CommonError::Case::unsupportedCoderType);
}

const std::vector<std::unique_ptr<PaletteCoder>>& allCoders() {
    static const auto coders = [] {
        std::vector<std::unique_ptr<PaletteCoder>> list;
        for (const auto& entry : paletteFormats()) list.push_back(coder(entry.format));
        return list;
    }();
    return coders;
}

const std::vector<std::unique_ptr<PaletteCoder>>& textCoders() {
    using F = PaletteFormat;
    static const auto coders = [] {
        std::vector<std::unique_ptr<PaletteCoder>> list;
        for (F format : {F::rgb, F::rgba, F::csv, F::json, F::gimp, F::paintShopPro, F::sketch, F::corelDraw, F::basicXML,
                         F::hexRGBA, F::paintNET, F::corelPainter, F::androidXML, F::openOffice, F::corelDrawV3,
                         F::scribusXML, F::simplePalette})
            list.push_back(coder(format));
        return list;
    }();
    return coders;
}

namespace {

// RGB text also comes in a 0...255 form with a name, extension and type identifier of its own but no case of
// the format table: its coder stands before the table's for its extension, and answers to its type.
const PaletteCoder& rgb255Coder() {
    static const auto coder = makeRGB255Coder();
    return *coder;
}

}  // namespace

std::vector<const PaletteCoder*> coders(std::string_view extension) {
    const std::string wanted = lowercased(extension);
    std::vector<const PaletteCoder*> matching;
    if (wanted.empty()) return matching;
    if (rgb255Coder().fileExtension() == std::vector<std::string>{wanted}) matching.push_back(&rgb255Coder());
    for (const auto& candidate : allCoders()) {
        const auto& extensions = info(candidate->format()).extensions;
        if (std::find(extensions.begin(), extensions.end(), wanted) != extensions.end()) matching.push_back(candidate.get());
    }
    return matching;
}

std::vector<const PaletteCoder*> codersForPath(const std::string& path) { return coders(kro::fileExtension(path)); }

// Without a system type registry, a type's preferred extension is the first extension of the format
// that declares it.
const PaletteCoder* coderForUTType(std::string_view utType) {
    if (utType == rgb255UTType) return &rgb255Coder();
    std::optional<std::string> preferred;
    for (const auto& entry : paletteFormats()) {
        if (entry.utType == utType && !entry.extensions.empty()) {
            preferred = std::string(entry.extensions.front());
            break;
        }
    }
    for (const auto& candidate : allCoders()) {
        const auto extensions = candidate->fileExtension();
        if (extensions.empty() ? !preferred : (preferred && lowercased(extensions.front()) == *preferred))
            return candidate.get();
    }
    return nullptr;
}

Palette decode(const std::string& path, const PaletteCoder* coder) {
    if (coder) {
        const PaletteFile file(path);
        try {
            return file.decode(*coder);
        } catch (const std::exception&) {
            throw CommonError(CommonError::Case::unsupportedPaletteType);
        }
    }
    const auto candidates = codersForPath(path);
    if (candidates.empty()) throw CommonError(CommonError::Case::unsupportedCoderType);
    const PaletteFile file(path);
    return decodeWithFirstTaker(candidates, [&](const PaletteCoder& candidate) { return file.decode(candidate); });
}

Palette decodeTrying(const std::vector<const PaletteCoder*>& candidates, std::string_view data) {
    return decodeWithFirstTaker(candidates, [&](const PaletteCoder& candidate) { return candidate.decode(data); });
}

Palette decode(std::string_view data, std::string_view fileExtension) { return decodeTrying(coders(fileExtension), data); }

}  // namespace PAL
