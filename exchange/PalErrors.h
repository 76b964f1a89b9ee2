#pragma once
// The errors the whole exchange layer shares. Each is an exception carrying its case and, for some
// cases, what was found.
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace PAL {

enum class ColorSpace : int;

class CommonError : public std::runtime_error {
public:
    enum class Case {
        unknownColorMode,       // text
        unknownColorType,       // integer
        invalidRGBHexString,    // text
        invalidRGBAHexString,   // text
        invalidARGBHexString,   // text
        unsupportedColorspace,  // colour space
        unsupportedPaletteType,
        unableToLoadFile,
        invalidFormat,
        invalidASEHeader,
        invalidColorComponentCountForModelType,
        invalidEndOfFile,
        invalidString,
        invalidIntegerValue,
        unknownBlockType,
        groupAlreadyOpen,
        groupNotOpen,
        unsupportedCGColorType,
        unsupportedColorSpace,
        invalidVersion,
        invalidBOM,
        invalidUnicodeFormatString,
        unsupportedCoderType,
        cannotConvertColorSpace,
        mismatchedColorspace,
        cannotCreateImage,
        notImplemented,
        notEnoughColorsToGenerateGradient,
        cannotGenerateGradient,
        cannotCreateColor,
        tooFewColors,
        indexOutOfRange,
        cannotGenerateOutputZip,
    };

    explicit CommonError(Case errorCase);
    CommonError(Case errorCase, std::string text);
    CommonError(Case errorCase, std::int64_t integer);
    CommonError(Case errorCase, ColorSpace colorSpace);

    Case errorCase() const { return case_; }
    // What the case carries, when it carries it.
    const std::optional<std::string>& text() const { return text_; }
    const std::optional<std::int64_t>& integer() const { return integer_; }
    const std::optional<ColorSpace>& colorSpace() const { return colorSpace_; }

private:
    Case case_;
    std::optional<std::string> text_;
    std::optional<std::int64_t> integer_;
    std::optional<ColorSpace> colorSpace_;
};

std::string_view caseName(CommonError::Case errorCase);

class FunctionError : public std::runtime_error {
public:
    enum class Case { monochromaticSpanTooLarge };
    explicit FunctionError(Case errorCase);
    Case errorCase() const { return case_; }

private:
    Case case_;
};

}  // namespace PAL
