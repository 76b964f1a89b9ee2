#include "exchange/gradients/GradientsCoder.h"

#include <algorithm>
#include <filesystem>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/TextSupport.h"
#include "exchange/gradients/GradientCoders.h"
#include "platform/Files.h"
#include "platform/linux/PosixFiles.h"

namespace PAL {

namespace {

std::string readFile(const std::string& path) {
    auto bytes = kro::PosixFiles().read(path);
    if (!bytes) throw CommonError(CommonError::Case::unableToLoadFile);
    return std::move(*bytes);
}

Gradients decodeTrying(const std::vector<const GradientsCoder*>& candidates, std::string_view data) {
    if (candidates.empty()) throw CommonError(CommonError::Case::unsupportedCoderType);
    for (const GradientsCoder* candidate : candidates) {
        try {
            return candidate->decode(data);
        } catch (const std::exception&) {
            // A refusal only means "not mine".
        }
    }
    throw CommonError(CommonError::Case::unsupportedPaletteType);
}

}  // namespace

std::string GradientsCoder::name() const { return std::string(info(format_).displayName); }

std::vector<std::string> GradientsCoder::fileExtension() const {
    const auto& extensions = info(format_).extensions;
    return {extensions.begin(), extensions.end()};
}

bool GradientsCoder::reads() const { return info(format_).reads; }
bool GradientsCoder::writes() const { return info(format_).writes; }

Gradients GradientsCoder::decode(BytesParser::BytesReader&) const {
    logError(name() + ": decode() not implemented");
    throw CommonError(CommonError::Case::notImplemented);
}

Gradients GradientsCoder::decode(std::string_view data) const {
    BytesParser::BytesReader reader(data);
    return decode(reader);
}

Gradients GradientsCoder::decodeFile(const std::string& path) const { return decode(std::string_view(readFile(path))); }

std::string GradientsCoder::encode(const Gradients&) const {
    logError(name() + ": encode() not implemented");
    throw CommonError(CommonError::Case::notImplemented);
}

std::unique_ptr<GradientsCoder> coder(GradientsFormat format) {
    using G = GradientsFormat;
    switch (format) {
    case G::json: return makeJSONGradientsCoder();
    case G::dcg: return makeDCGCoder();
    case G::gimp: return makeGIMPGradientCoder();
    case G::css: return makeCSSGradientCoder();
    case G::adobeGRD: return makeAdobeGRDCoder();
    case G::paintShopPro: return makePaintShopProGradientCoder();
    case G::colorPaletteTables: return makeColorPaletteTablesCoder();
    case G::gnuplot: return makeGnuplotCoder();
    case G::svg: return makeSVGGradientCoder();
    case G::swiftGen: return makeSwiftGradientCoder();
    case G::swiftUIGen: return makeSwiftUIGradientCoder();
    }
    throw CommonError(CommonError::Case::unsupportedCoderType);
}

const std::vector<std::unique_ptr<GradientsCoder>>& allGradientsCoders() {
    static const auto coders = [] {
        std::vector<std::unique_ptr<GradientsCoder>> list;
        for (const auto& entry : gradientsFormats()) list.push_back(coder(entry.format));
        return list;
    }();
    return coders;
}

std::vector<const GradientsCoder*> gradientsCoders(std::string_view extension) {
    const std::string wanted = textfile::lowercased(extension);
    std::vector<const GradientsCoder*> matching;
    if (wanted.empty()) return matching;
    for (const auto& candidate : allGradientsCoders()) {
        const auto& extensions = info(candidate->format()).extensions;
        if (std::find(extensions.begin(), extensions.end(), wanted) != extensions.end()) matching.push_back(candidate.get());
    }
    return matching;
}

Gradients decodeGradients(const std::string& path, const GradientsCoder* coder) {
    Gradients gradients;
    if (coder) {
        const std::string bytes = readFile(path);
        try {
            gradients = coder->decode(std::string_view(bytes));
        } catch (const std::exception&) {
            throw CommonError(CommonError::Case::unsupportedPaletteType);
        }
    } else {
        const auto candidates = gradientsCoders(kro::fileExtension(path));
        if (candidates.empty()) throw CommonError(CommonError::Case::unsupportedCoderType);
        gradients = decodeTrying(candidates, readFile(path));
    }
    // Formats without a name field (and GIMP's older files) take the name from the file, as their programs do.
    if (gradients.gradients.size() == 1 && gradients.gradients.front().name.empty())
        gradients.gradients.front().name = std::filesystem::path(path).stem().string();
    return gradients;
}

Gradients decodeGradients(std::string_view data, std::string_view fileExtension) {
    return decodeTrying(gradientsCoders(fileExtension), data);
}

}  // namespace PAL
