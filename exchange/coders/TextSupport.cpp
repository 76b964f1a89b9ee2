#include "exchange/coders/TextSupport.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"

namespace PAL::textfile {

void appendUTF8(std::string& out, std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        out.push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
    }
}

namespace {

// UTF-16 after its byte-order mark; an unpaired surrogate becomes U+FFFD, an odd last byte is dropped.
std::string fromUTF16(std::string_view bytes, bool bigEndian) {
    std::string out;
    out.reserve(bytes.size() / 2);
    const auto unit = [&](std::size_t i) {
        const auto a = static_cast<unsigned char>(bytes[i]), b = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<std::uint32_t>(bigEndian ? (a << 8) | b : (b << 8) | a);
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t codePoint = unit(i);
        if (codePoint >= 0xD800 && codePoint < 0xDC00 && i + 3 < bytes.size()) {
            const std::uint32_t low = unit(i + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            } else {
                codePoint = 0xFFFD;
            }
        } else if (codePoint >= 0xD800 && codePoint < 0xE000) {
            codePoint = 0xFFFD;
        }
        appendUTF8(out, codePoint);
    }
    return out;
}

// What Windows-1252 puts at 0x80...0x9F; the five bytes it leaves unassigned keep their C1 code points.
constexpr std::uint16_t windows1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The code point at `i` of UTF-8 text, advancing `i`. A malformed sequence, an overlong form (C0 92 for
// U+0012), a surrogate or a value past U+10FFFF gives nullopt and skips one byte: such bytes are not UTF-8,
// and taking them as text would let a control character hide inside a name.
std::optional<std::uint32_t> nextCodePoint(std::string_view text, std::size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
    if (length == 0 || i + length > text.size()) {
        ++i;
        return std::nullopt;
    }
    std::uint32_t codePoint = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[i + k]);
        if ((next & 0xC0) != 0x80) {
            ++i;
            return std::nullopt;
        }
        codePoint = (codePoint << 6) | (next & 0x3F);
    }
    constexpr std::uint32_t smallest[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < smallest[length] || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint < 0xE000)) {
        ++i;
        return std::nullopt;
    }
    i += length;
    return codePoint;
}

}  // namespace

std::string remainingBytes(BytesParser::BytesReader& reader) {
    const auto bytes = reader.readAll();
    return std::string(bytes.begin(), bytes.end());
}

std::string fromBytes(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    else if (bytes.starts_with("\xFF\xFE")) return fromUTF16(bytes.substr(2), false);
    else if (bytes.starts_with("\xFE\xFF")) return fromUTF16(bytes.substr(2), true);
    return isValidUTF8(bytes) ? std::string(bytes) : latin1ToUTF8(bytes);
}

std::string readText(BytesParser::BytesReader& reader) {
    const auto bytes = reader.readAll();
    return fromBytes(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

bool isValidUTF8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();)
        if (!nextCodePoint(text, i)) return false;
    return true;
}

std::string latin1ToUTF8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) appendUTF8(out, c);
    return out;
}

std::string windows1252ToUTF8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) appendUTF8(out, c >= 0x80 && c < 0xA0 ? windows1252High[c - 0x80] : c);
    return out;
}

std::string utf8ToWindows1252(std::string_view text, char replacement) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto codePoint = nextCodePoint(text, i);
        if (!codePoint) {
            out += replacement;
        } else if (*codePoint < 0x80 || (*codePoint >= 0xA0 && *codePoint < 0x100)) {
            out += static_cast<char>(*codePoint);
        } else {
            const auto* const end = std::end(windows1252High);
            const auto* const found = std::find(std::begin(windows1252High), end, *codePoint);
            out += found == end ? replacement : static_cast<char>(0x80 + (found - std::begin(windows1252High)));
        }
    }
    return out;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n' && text[i] != '\r') continue;
        lines.push_back(text.substr(start, i - start));
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < text.size()) lines.push_back(text.substr(start));
    return lines;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> out;
    std::size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && isBlank(text[i])) ++i;
        const std::size_t start = i;
        while (i < text.size() && !isBlank(text[i])) ++i;
        if (i > start) out.push_back(text.substr(start, i - start));
    }
    return out;
}

std::vector<std::string_view> fields(std::string_view text, char separator) {
    std::vector<std::string_view> out;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != separator) continue;
        out.push_back(text.substr(start, i - start));
        start = i + 1;
    }
    return out;
}

std::string_view nextWord(std::string_view& rest) {
    std::size_t start = 0;
    while (start < rest.size() && isBlank(rest[start])) ++start;
    std::size_t end = start;
    while (end < rest.size() && !isBlank(rest[end])) ++end;
    const std::string_view word = rest.substr(start, end - start);
    rest.remove_prefix(end);
    return word;
}

bool isHexDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

std::string lowercased(std::string_view text) {
    std::string out(text);
    for (auto& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::optional<long long> integer(std::string_view token) {
    if (token.starts_with('+')) token.remove_prefix(1);
    if (token.empty()) return std::nullopt;
    long long value = 0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value, 10);
    if (error != std::errc() || end != token.data() + token.size()) return std::nullopt;
    return value;
}

std::optional<double> number(std::string_view token) {
    if (token.starts_with('+')) token.remove_prefix(1);
    if (token.empty()) return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
    if (error != std::errc() || end != token.data() + token.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

double requiredNumber(std::string_view token) {
    const auto value = number(token);
    if (!value) throw CommonError(CommonError::Case::invalidFormat);
    return *value;
}

std::optional<std::string_view> hexColorDigits(std::string_view token) {
    const bool marked = token.starts_with('#') || token.starts_with("0x") || token.starts_with("0X");
    if (marked) token.remove_prefix(token.front() == '#' ? 1 : 2);
    if (token.size() != 6 && token.size() != 8 && !(marked && (token.size() == 3 || token.size() == 4))) return std::nullopt;
    for (char c : token)
        if (!std::isxdigit(static_cast<unsigned char>(c))) return std::nullopt;
    return token;
}

std::string fixed(double value, int decimals) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (result.ec != std::errc()) return "0";
    std::string out(buffer, result.ptr);
    if (out.starts_with('-') && out.find_first_not_of("0.", 1) == std::string::npos) out.erase(0, 1);  // no "-0.00"
    return out;
}

std::string fixedTrimmed(double value, int decimals) {
    std::string out = fixed(value, decimals);
    if (out.find('.') == std::string::npos) return out;
    out.erase(out.find_last_not_of('0') + 1);
    if (out.back() == '.') out.pop_back();
    return out == "-0" ? "0" : out;
}

std::string shortest(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return result.ec == std::errc() ? std::string(buffer, result.ptr) : "0";
}

std::string significant(double value, int digits) {
    char buffer[64];
    if (value == 0) value = 0;  // no "-0"
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
    return result.ec == std::errc() ? std::string(buffer, result.ptr) : "0";
}

std::string singleLine(std::string_view text) {
    std::string out(text);
    for (auto& c : out)
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    return out;
}

}  // namespace PAL::textfile
