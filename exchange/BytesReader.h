#pragma once
#include <bit>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// Byte streams for the binary palette coders: typed numbers in a stated byte order, strings in a
// stated encoding, over memory or over a stream. Knows nothing of colours.
namespace BytesParser {

enum class Endianness { big, little };

// The integer widths the streams read and write: 8 to 64 bits, signed or unsigned.
template <typename T>
concept FixedInteger = std::is_integral_v<T> && !std::is_same_v<T, bool>;

// Text is always UTF-8 on our side; these are the encodings a file may hold it in.
enum class TextEncoding { ascii, utf8, isoLatin1, utf16BigEndian, utf16LittleEndian };

struct ReaderError : std::exception {
    enum Code { invalidFile, endOfData, invalidStringEncoding, invalidOffset, randomAccessSeekingNotSupportedBySource };
    Code code;
    explicit ReaderError(Code code) : code(code) {}
    const char* what() const noexcept override;
};

// Decodes bytes in an encoding into UTF-8; false when they are not valid in it.
bool decodeText(std::span<const uint8_t> bytes, TextEncoding encoding, std::string& out);

// Raw storage of a stream source. Starts at 1024 bytes and grows when a read asks for more;
// the smaller reads that follow reuse it.
class ByteBuffer {
public:
    static constexpr size_t initialSize = 1024;
    ByteBuffer() : buffer(initialSize) {}
    size_t readBufferSize() const { return buffer.size(); }
    uint8_t* data() { return buffer.data(); }
    void ensureSize(size_t size) {
        if (size > buffer.size()) buffer.resize(size);
    }

private:
    std::vector<uint8_t> buffer;
};

// Where a reader's bytes come from. readBytes returns a view that stays valid until the next read.
class ByteSource {
public:
    enum class Seek { start, end, current };
    virtual ~ByteSource() = default;
    virtual size_t readPosition() const = 0;
    virtual bool hasMoreData() = 0;
    virtual std::span<const uint8_t> readBytes(size_t count) = 0;
    virtual uint8_t readByte() = 0;
    virtual std::vector<uint8_t> readAll() = 0;
    // Everything left, as a view that stays valid until the next read.
    virtual std::span<const uint8_t> readRemaining() = 0;
    virtual void seek(int64_t offset, Seek from) = 0;
    // How many bytes are left, where the source knows it (a stream does not).
    virtual std::optional<size_t> bytesLeft() const { return std::nullopt; }
};

// Reads its own copy of the bytes, or bytes it views where they stand.
class InMemorySource final : public ByteSource {
public:
    explicit InMemorySource(std::vector<uint8_t> bytes) : owned(std::move(bytes)), storage(owned) {}
    explicit InMemorySource(std::span<const uint8_t> viewed) : storage(viewed) {}
    size_t readPosition() const override { return position; }
    bool hasMoreData() override { return position < storage.size(); }
    std::span<const uint8_t> readBytes(size_t count) override;
    uint8_t readByte() override;
    std::vector<uint8_t> readAll() override;
    std::span<const uint8_t> readRemaining() override;
    void seek(int64_t offset, Seek from) override;
    std::optional<size_t> bytesLeft() const override { return storage.size() - position; }

private:
    std::vector<uint8_t> owned;
    std::span<const uint8_t> storage;
    size_t position = 0;
};

// Reads forward only: every seek fails, and a skip is a read whose bytes are dropped.
class InputStreamSource final : public ByteSource {
public:
    explicit InputStreamSource(std::unique_ptr<std::istream> inputStream);
    size_t readPosition() const override { return position; }
    bool hasMoreData() override;
    std::span<const uint8_t> readBytes(size_t count) override;
    uint8_t readByte() override;
    std::vector<uint8_t> readAll() override;
    std::span<const uint8_t> readRemaining() override;
    void seek(int64_t offset, Seek from) override;

private:
    std::unique_ptr<std::istream> inputStream;
    ByteBuffer readBuffer;
    std::vector<uint8_t> rest;  // what readRemaining gave
    size_t position = 0;
};

// Reads a regular file a window at a time, answering as an in-memory source over the whole file would,
// seeks included, without holding the file: a palette of 100,000 colours is read as it is decoded.
class FileSource final : public ByteSource {
public:
    // Nothing when the path is not a regular file that opens.
    static std::unique_ptr<FileSource> open(const std::string& path);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    size_t readPosition() const override { return position; }
    bool hasMoreData() override { return position < size; }
    std::span<const uint8_t> readBytes(size_t count) override;
    uint8_t readByte() override { return readBytes(1)[0]; }
    std::vector<uint8_t> readAll() override;
    std::span<const uint8_t> readRemaining() override;
    void seek(int64_t offset, Seek from) override;
    std::optional<size_t> bytesLeft() const override { return size - position; }

private:
    FileSource(int descriptor, size_t size) : descriptor(descriptor), size(size) {}
    // Brings the file's bytes from the position on, `count` of them at least, into the window.
    void load(size_t count);
    // `count` bytes of the file from `offset` into `target`; a file that shrank meanwhile ends the data.
    void readAt(size_t offset, uint8_t* target, size_t count) const;

    int descriptor;
    size_t size;
    size_t position = 0;
    std::vector<uint8_t> window;
    size_t windowStart = 0;  // the file offset of the window's first byte
};

class BytesReader {
public:
    using Seek = ByteSource::Seek;

    explicit BytesReader(std::vector<uint8_t> bytes);
    explicit BytesReader(std::string_view bytes);
    // Reads `bytes` where they stand, without a copy: they must outlive the reader.
    static BytesReader viewing(std::string_view bytes);
    explicit BytesReader(std::unique_ptr<ByteSource> source) : source(std::move(source)) {}
    // Takes an open stream; fails with invalidFile when there is none or it is not readable.
    explicit BytesReader(std::unique_ptr<std::istream> inputStream);
    // A plain path or a "file://" URL; any other URL, or a file that will not open, fails with invalidFile.
    static BytesReader fromFileURL(const std::string& url);

    size_t readPosition() const { return source->readPosition(); }
    bool hasMoreData() { return source->hasMoreData(); }

    std::vector<uint8_t> readBytes(int64_t count);
    uint8_t readByte() { return source->readByte(); }
    std::vector<uint8_t> readAll() { return source->readAll(); }
    // Everything left without a copy, valid until the next read.
    std::span<const uint8_t> readRemaining() { return source->readRemaining(); }
    void seek(int64_t offset, Seek from) { source->seek(offset, from); }
    std::optional<size_t> bytesLeft() const { return source->bytesLeft(); }

    template <FixedInteger T>
    T readInteger(Endianness endianness) {
        return fromBytes<T>(source->readBytes(sizeof(T)).data(), endianness);
    }
    template <FixedInteger T>
    std::vector<T> readIntegers(size_t count, Endianness endianness) {
        return readArray<T>(count, endianness);
    }
    float readFloat32(Endianness endianness) { return std::bit_cast<float>(readInteger<uint32_t>(endianness)); }
    double readFloat64(Endianness endianness) { return std::bit_cast<double>(readInteger<uint64_t>(endianness)); }
    std::vector<float> readFloat32s(size_t count, Endianness endianness) { return readArray<float>(count, endianness); }

    // byteLength of 0 or less reads nothing. With stripTerminator, a last byte of 0 is dropped
    // before decoding (for formats whose stored length counts the terminator).
    std::string readString(TextEncoding encoding, int64_t byteLength, bool stripTerminator = false);
    // Single bytes up to the first 0, which is consumed and not kept; the end of the data ends it too.
    std::string readNullTerminatedString(TextEncoding encoding);
    // 2 x codeUnitCount bytes, decoded.
    std::string readUTF16String(size_t codeUnitCount, TextEncoding encoding);
    // 2-byte units up to a 0x0000 unit, which is consumed and not kept; the end of the data ends it too.
    std::string readWideNullTerminatedString(TextEncoding encoding);
    // A 32-bit big-endian unit count, then that many UTF-16 big-endian units. A stored terminator is
    // tolerated, and text that does not decode reads as empty.
    std::string readPascalUTF16String();

private:
    template <typename T>
    static T fromBytes(const uint8_t* bytes, Endianness endianness) {
        using U = std::make_unsigned_t<std::conditional_t<std::is_floating_point_v<T>,
                                                          std::conditional_t<sizeof(T) == 4, int32_t, int64_t>, T>>;
        U value = 0;
        if (endianness == Endianness::big) {
            for (size_t i = 0; i < sizeof(T); ++i) value = static_cast<U>((value << 8) | bytes[i]);
        } else {
            for (size_t i = sizeof(T); i-- > 0;) value = static_cast<U>((value << 8) | bytes[i]);
        }
        return std::bit_cast<T>(value);
    }
    template <typename T>
    std::vector<T> readArray(size_t count, Endianness endianness) {
        if (count > SIZE_MAX / sizeof(T)) throw ReaderError(ReaderError::endOfData);
        const auto bytes = source->readBytes(count * sizeof(T));  // the whole block in one request
        std::vector<T> values(count);
        for (size_t i = 0; i < count; ++i) values[i] = fromBytes<T>(bytes.data() + i * sizeof(T), endianness);
        return values;
    }

    std::unique_ptr<ByteSource> source;
};

}  // namespace BytesParser
