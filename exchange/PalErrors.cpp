#include "exchange/PalErrors.h"

#include <array>

#include "exchange/PalColor.h"

namespace PAL {

namespace {

constexpr std::array<std::string_view, 33> caseNames = {
    "unknownColorMode", "unknownColorType", "invalidRGBHexString", "invalidRGBAHexString",
    "invalidARGBHexString", "unsupportedColorspace", "unsupportedPaletteType", "unableToLoadFile",
    "invalidFormat", "invalidASEHeader", "invalidColorComponentCountForModelType", "invalidEndOfFile",
    "invalidString", "invalidIntegerValue", "unknownBlockType", "groupAlreadyOpen", "groupNotOpen",
    "unsupportedCGColorType", "unsupportedColorSpace", "invalidVersion", "invalidBOM",
    "invalidUnicodeFormatString", "unsupportedCoderType", "cannotConvertColorSpace", "mismatchedColorspace",
    "cannotCreateImage", "notImplemented", "notEnoughColorsToGenerateGradient", "cannotGenerateGradient",
    "cannotCreateColor", "tooFewColors", "indexOutOfRange", "cannotGenerateOutputZip",
};

std::string describe(CommonError::Case errorCase, const std::string& carried = {}) {
    std::string text = "PAL.CommonError." + std::string(caseName(errorCase));
    if (!carried.empty()) text += "(" + carried + ")";
    return text;
}

}  // namespace

std::string_view caseName(CommonError::Case errorCase) { return caseNames.at(static_cast<std::size_t>(errorCase)); }

CommonError::CommonError(Case errorCase) : std::runtime_error(describe(errorCase)), case_(errorCase) {}

CommonError::CommonError(Case errorCase, std::string text)
    : std::runtime_error(describe(errorCase, "\"" + text + "\"")), case_(errorCase), text_(std::move(text)) {}

CommonError::CommonError(Case errorCase, std::int64_t integer)
    : std::runtime_error(describe(errorCase, std::to_string(integer))), case_(errorCase), integer_(integer) {}

CommonError::CommonError(Case errorCase, ColorSpace colorSpace)
    : std::runtime_error(describe(errorCase, std::string(PAL::text(colorSpace)))), case_(errorCase), colorSpace_(colorSpace) {}

FunctionError::FunctionError(Case errorCase)
    : std::runtime_error("PAL.FunctionError.monochromaticSpanTooLarge"), case_(errorCase) {}

}  // namespace PAL
