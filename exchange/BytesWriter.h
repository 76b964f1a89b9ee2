#pragma once
#include <bit>
#include <cstdint>
#include <exception>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/BytesReader.h"

namespace BytesParser {

struct WriterError : std::exception {
    enum Code {
        cannotConvertStringEncoding,
        cannotOpenOutputFile,
        unableToWriteBytes,
        emptyBuffer,
        notSupported,
        noDataAvailable,
        invalidByteString
    };
    Code code;
    explicit WriterError(Code code) : code(code) {}
    const char* what() const noexcept override;
};

// Encodes UTF-8 text in an encoding; false when the text is not valid UTF-8 or holds a character
// the encoding cannot carry.
bool encodeText(std::string_view text, TextEncoding encoding, std::vector<uint8_t>& out);

// Writes to memory, or to a file. A file target writes beside the file and only replaces it on
// finish(), so a failed or abandoned write leaves the old file whole.
class BytesWriter {
public:
    BytesWriter() = default;
    // A plain path or a "file://" URL; fails with cannotOpenOutputFile.
    static BytesWriter toFileURL(const std::string& url);
    BytesWriter(BytesWriter&&) noexcept;
    BytesWriter& operator=(BytesWriter&&) = delete;
    ~BytesWriter();

    void writeBytes(std::span<const uint8_t> bytes);
    void writeBytes(std::string_view bytes) { writeBytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}); }
    void writeByte(uint8_t byte) { writeBytes({&byte, 1}); }

    template <FixedInteger T>
    void writeInteger(T value, Endianness endianness) {
        uint8_t bytes[sizeof(T)];
        toBytes(value, endianness, bytes);
        writeBytes(bytes);
    }
    template <FixedInteger T>
    void writeIntegers(std::span<const T> values, Endianness endianness) {
        if (values.empty()) return;
        std::vector<uint8_t> bytes(values.size() * sizeof(T));
        for (size_t i = 0; i < values.size(); ++i) toBytes(values[i], endianness, bytes.data() + i * sizeof(T));
        writeBytes(bytes);
    }
    void writeFloat32(float value, Endianness endianness) { writeInteger(std::bit_cast<uint32_t>(value), endianness); }
    void writeFloat64(double value, Endianness endianness) { writeInteger(std::bit_cast<uint64_t>(value), endianness); }
    // With includeTerminator, one 0 byte follows the text.
    void writeString(std::string_view text, TextEncoding encoding, bool includeTerminator = false);

    size_t count() const { return written; }
    // The bytes written; memory targets only (notSupported for a file).
    const std::string& data() const;
    // Flushes a file target and moves it into place. Nothing to do for memory.
    void finish();

private:
    template <typename T>
    static void toBytes(T value, Endianness endianness, uint8_t* out) {
        auto bits = static_cast<std::make_unsigned_t<T>>(value);
        for (size_t i = 0; i < sizeof(T); ++i) {
            const size_t at = endianness == Endianness::big ? sizeof(T) - 1 - i : i;
            out[at] = static_cast<uint8_t>(bits & 0xFF);
            bits = static_cast<std::make_unsigned_t<T>>(bits >> 8);
        }
    }

    std::string memory;
    std::ofstream file;
    std::string filePath, temporaryPath;
    size_t written = 0;
};

}  // namespace BytesParser
