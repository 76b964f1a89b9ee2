#include "exchange/coders/TextSupport.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace PAL::textfile {

namespace {

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

}  // namespace

std::string fromBytes(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    else if (bytes.starts_with("\xFF\xFE")) return fromUTF16(bytes.substr(2), false);
    else if (bytes.starts_with("\xFE\xFF")) return fromUTF16(bytes.substr(2), true);
    return isValidUTF8(bytes) ? std::string(bytes) : latin1ToUTF8(bytes);
}

bool isValidUTF8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        const std::size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
        if (length == 0 || i + length > text.size()) return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
        i += length;
    }
    return true;
}

std::string latin1ToUTF8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) appendUTF8(out, c);
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

std::string fixed(double value, int decimals) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (result.ec != std::errc()) return "0";
    std::string out(buffer, result.ptr);
    if (out.starts_with('-') && out.find_first_not_of("0.", 1) == std::string::npos) out.erase(0, 1);  // no "-0.00"
    return out;
}

std::string trimmedFixed(double value, int decimals) {
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

std::string singleLine(std::string_view text) {
    std::string out(text);
    for (auto& c : out)
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    return out;
}

}  // namespace PAL::textfile
