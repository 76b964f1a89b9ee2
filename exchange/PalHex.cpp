// Hex text to a colour. The length that decides the layout is the length of the whole trimmed text,
// not of the digits scanned: "12zz" is read as a 4-digit value of 0x12.
#include <cctype>

#include "exchange/PalColor.h"
#include "exchange/PalErrors.h"

namespace PAL {

namespace {

bool isAlphanumeric(unsigned char c) { return std::isalnum(c) != 0; }

// Characters, not bytes: a UTF-8 continuation byte does not start one.
std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80) ++count;
    return count;
}

}  // namespace

RGB parseHex(std::string_view given, ColorByteFormat format) {
    const auto invalid = [&] { return CommonError(CommonError::Case::invalidRGBHexString, std::string(given)); };

    std::string text(given);
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    std::size_t begin = 0, end = text.size();
    while (begin < end && !isAlphanumeric(static_cast<unsigned char>(text[begin]))) ++begin;
    while (end > begin && !isAlphanumeric(static_cast<unsigned char>(text[end - 1]))) --end;
    std::string_view trimmed = std::string_view(text).substr(begin, end - begin);
    if (trimmed.starts_with("0x")) trimmed.remove_prefix(2);

    std::uint64_t value = 0;
    std::size_t digits = 0;
    for (char c : trimmed) {
        const int digit = std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (c >= 'a' && c <= 'f') ? c - 'a' + 10 : -1;
        if (digit < 0) break;
        if (digits == 16) throw invalid();  // more than 64 bits; no accepted length is this long
        value = value << 4 | static_cast<unsigned>(digit);
        ++digits;
    }
    if (digits == 0) throw invalid();

    const std::size_t length = characterCount(trimmed);
    double c[4] = {0, 0, 0, 0};
    const auto unit = [](std::uint64_t byte) { return std::min(static_cast<double>(byte & 0xFF) / 255.0, 1.0); };
    const auto doubled = [](std::uint64_t nibble) { return (nibble & 0xF) << 4 | (nibble & 0xF); };
    switch (length) {
    case 3:
    case 4:
        for (std::size_t i = 0; i < length; ++i) c[i] = unit(doubled(value >> (4 * (length - 1 - i))));
        break;
    case 6:
    case 8:
        for (std::size_t i = 0; i < length / 2; ++i) c[i] = unit(value >> (8 * (length / 2 - 1 - i)));
        break;
    default:
        throw invalid();
    }

    const bool hasAlpha = length == 4 || length == 8;
    switch (format) {
    case ColorByteFormat::rgb: return {c[0], c[1], c[2], 1};
    case ColorByteFormat::bgr: return {c[2], c[1], c[0], 1};
    case ColorByteFormat::argb: return hasAlpha ? RGB{c[1], c[2], c[3], c[0]} : RGB{c[0], c[1], c[2], 1};
    case ColorByteFormat::rgba: return {c[0], c[1], c[2], hasAlpha ? c[3] : 1};
    case ColorByteFormat::abgr: return hasAlpha ? RGB{c[3], c[2], c[1], c[0]} : RGB{c[2], c[1], c[0], 1};
    case ColorByteFormat::bgra: return {c[2], c[1], c[0], hasAlpha ? c[3] : 1};
    }
    throw invalid();
}

}  // namespace PAL
