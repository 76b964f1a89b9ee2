#pragma once
// Helpers for the binary coder tests: bytes written as hex, the error a decode or encode throws,
// and the lines the layer logs while a test runs.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "exchange/BytesReader.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"

namespace binarytest {

// "41 53 45 46" or "41534546"; spaces and line breaks are ignored.
inline std::string hexBytes(std::string_view hex) {
    std::string bytes, digits;
    for (char c : hex)
        if (std::isxdigit(static_cast<unsigned char>(c))) digits += c;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

// Integers as files store them, for files built field by field.
inline std::string le16(uint16_t value) { return {static_cast<char>(value), static_cast<char>(value >> 8)}; }
inline std::string le32(uint32_t value) { return le16(static_cast<uint16_t>(value)) + le16(static_cast<uint16_t>(value >> 16)); }
inline std::string be32(uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8), static_cast<char>(value)};
}

inline std::string hexOf(std::string_view bytes) {
    static const char* digits = "0123456789ABCDEF";
    std::string hex;
    for (unsigned char c : bytes) {
        if (!hex.empty()) hex += ' ';
        hex += digits[c >> 4];
        hex += digits[c & 15];
    }
    return hex;
}

// The case of the CommonError that `action` throws, or nothing.
template <typename Action>
std::optional<PAL::CommonError::Case> commonError(Action&& action) {
    try {
        action();
    } catch (const PAL::CommonError& error) {
        return error.errorCase();
    }
    return std::nullopt;
}

// Each file is refused with its own case; a wrong case names the file's bytes.
inline void expectRefused(const PAL::PaletteCoder& coder, const std::vector<std::pair<std::string, PAL::CommonError::Case>>& files) {
    for (const auto& [bytes, expected] : files)
        EXPECT_EQ(commonError([&] { coder.decode(std::string_view(bytes)); }), expected) << hexOf(bytes);
}

template <typename Action>
std::optional<BytesParser::ReaderError::Code> readerError(Action&& action) {
    try {
        action();
    } catch (const BytesParser::ReaderError& error) {
        return error.code;
    }
    return std::nullopt;
}

// Collects what the layer logs for as long as it lives.
class LogCapture {
public:
    LogCapture() {
        PAL::setLogSink([this](const PAL::LogRecord& record) { lines.push_back({record.level, record.message}); });
    }
    ~LogCapture() { PAL::setLogSink({}); }
    bool contains(std::string_view message, std::optional<PAL::LogLevel> level = std::nullopt) const {
        for (const auto& line : lines)
            if (line.second == message && (!level || line.first == *level)) return true;
        return false;
    }
    std::vector<std::pair<PAL::LogLevel, std::string>> lines;
};

// Component-wise comparison with a tolerance, for values that went through 8- or 16-bit storage.
inline void expectComponents(const PAL::Color& color, PAL::ColorSpace space, std::vector<double> components, double tolerance = 1e-6) {
    EXPECT_EQ(color.colorSpace, space);
    ASSERT_EQ(color.colorComponents.size(), components.size());
    for (size_t i = 0; i < components.size(); ++i) EXPECT_NEAR(color.colorComponents[i], components[i], tolerance) << "component " << i;
}

}  // namespace binarytest
