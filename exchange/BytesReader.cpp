#include "exchange/BytesReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

namespace BytesParser {

const char* ReaderError::what() const noexcept {
    switch (code) {
        case invalidFile: return "ReaderError.invalidFile";
        case endOfData: return "ReaderError.endOfData";
        case invalidStringEncoding: return "ReaderError.invalidStringEncoding";
        case invalidOffset: return "ReaderError.invalidOffset";
        case randomAccessSeekingNotSupportedBySource: return "ReaderError.randomAccessSeekingNotSupportedBySource";
    }
    return "ReaderError";
}

// ---- Text decoding ----

namespace {

void appendUTF8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool isValidUTF8(std::span<const uint8_t> bytes) {
    size_t i = 0;
    while (i < bytes.size()) {
        const uint8_t lead = bytes[i];
        size_t length;
        char32_t c;
        if (lead < 0x80) {
            ++i;
            continue;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2, c = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3, c = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4, c = lead & 0x07;
        } else {
            return false;
        }
        if (i + length > bytes.size()) return false;
        for (size_t k = 1; k < length; ++k) {
            if ((bytes[i + k] & 0xC0) != 0x80) return false;
            c = (c << 6) | (bytes[i + k] & 0x3F);
        }
        static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < smallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return false;
        i += length;
    }
    return true;
}

bool decodeUTF16(std::span<const uint8_t> bytes, bool bigEndian, std::string& out) {
    if (bytes.size() % 2 != 0) return false;
    const auto unitAt = [&](size_t i) -> char16_t {
        return bigEndian ? static_cast<char16_t>(bytes[i] << 8 | bytes[i + 1])
                         : static_cast<char16_t>(bytes[i + 1] << 8 | bytes[i]);
    };
    out.reserve(bytes.size() / 2);  // at least a byte a unit; short names stay within the string itself
    for (size_t i = 0; i < bytes.size(); i += 2) {
        const char16_t unit = unitAt(i);
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            if (i + 2 >= bytes.size()) return false;
            const char16_t low = unitAt(i + 2);
            if (low < 0xDC00 || low > 0xDFFF) return false;
            appendUTF8(out, 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (low - 0xDC00));
            i += 2;
        } else if (unit >= 0xDC00 && unit <= 0xDFFF) {
            return false;
        } else {
            appendUTF8(out, unit);
        }
    }
    return true;
}

}  // namespace

bool decodeText(std::span<const uint8_t> bytes, TextEncoding encoding, std::string& out) {
    out.clear();
    switch (encoding) {
        case TextEncoding::ascii:
            if (std::any_of(bytes.begin(), bytes.end(), [](uint8_t b) { return b >= 0x80; })) return false;
            out.assign(bytes.begin(), bytes.end());
            return true;
        case TextEncoding::utf8:
            if (!isValidUTF8(bytes)) return false;
            out.assign(bytes.begin(), bytes.end());
            return true;
        case TextEncoding::isoLatin1:
            for (const uint8_t b : bytes) appendUTF8(out, b);
            return true;
        case TextEncoding::utf16BigEndian: return decodeUTF16(bytes, true, out);
        case TextEncoding::utf16LittleEndian: return decodeUTF16(bytes, false, out);
    }
    return false;
}

// ---- In memory ----

std::span<const uint8_t> InMemorySource::readBytes(size_t count) {
    if (count > storage.size() - position) throw ReaderError(ReaderError::endOfData);
    const std::span<const uint8_t> range(storage.data() + position, count);
    position += count;
    return range;
}

uint8_t InMemorySource::readByte() {
    if (position >= storage.size()) throw ReaderError(ReaderError::endOfData);
    return storage[position++];
}

std::vector<uint8_t> InMemorySource::readAll() {
    std::vector<uint8_t> rest(storage.begin() + static_cast<ptrdiff_t>(position), storage.end());
    position = storage.size();
    return rest;
}

std::span<const uint8_t> InMemorySource::readRemaining() {
    const auto rest = storage.subspan(position);
    position = storage.size();
    return rest;
}

namespace {

// Where a seek lands in `size` bytes read as far as `position`. A position past the end would only defer
// the failure to the next read, so it is refused here.
size_t seekTarget(int64_t offset, ByteSource::Seek from, size_t position, size_t size) {
    const auto length = static_cast<int64_t>(size);
    const int64_t base = from == ByteSource::Seek::start ? 0 : from == ByteSource::Seek::end ? length : static_cast<int64_t>(position);
    if (offset > 0 && base > INT64_MAX - offset) throw ReaderError(ReaderError::invalidOffset);
    const int64_t target = base + offset;
    if (target < 0 || target > length) throw ReaderError(ReaderError::invalidOffset);
    return static_cast<size_t>(target);
}

}  // namespace

void InMemorySource::seek(int64_t offset, Seek from) { position = seekTarget(offset, from, position, storage.size()); }

// ---- Streamed ----

InputStreamSource::InputStreamSource(std::unique_ptr<std::istream> inputStream)
    : inputStream(std::move(inputStream)) {
    if (!this->inputStream || !*this->inputStream) throw ReaderError(ReaderError::invalidFile);
}

bool InputStreamSource::hasMoreData() {
    return inputStream->peek() != std::istream::traits_type::eof();
}

std::span<const uint8_t> InputStreamSource::readBytes(size_t count) {
    if (count == 0) return {};
    if (!hasMoreData()) throw ReaderError(ReaderError::endOfData);
    // The buffer grows with what actually arrives rather than to the size asked for up front, so a
    // corrupt length field in a file cannot make us allocate gigabytes before finding the end.
    constexpr size_t chunk = 1 << 20;
    size_t received = 0;
    while (received < count) {
        const size_t want = std::min(count - received, chunk);
        readBuffer.ensureSize(received + want);
        inputStream->read(reinterpret_cast<char*>(readBuffer.data() + received), static_cast<std::streamsize>(want));
        const auto got = static_cast<size_t>(inputStream->gcount());
        received += got;
        if (got < want) {
            if (inputStream->bad() || !hasMoreData()) throw ReaderError(ReaderError::endOfData);
            inputStream->clear();
        }
    }
    position += count;
    return {readBuffer.data(), count};
}

uint8_t InputStreamSource::readByte() {
    const int c = inputStream->get();
    if (c == std::istream::traits_type::eof()) throw ReaderError(ReaderError::endOfData);
    ++position;
    return static_cast<uint8_t>(c);
}

std::vector<uint8_t> InputStreamSource::readAll() {
    std::vector<uint8_t> all;
    char chunk[16384];
    while (inputStream->read(chunk, sizeof chunk) || inputStream->gcount() > 0) {
        all.insert(all.end(), chunk, chunk + inputStream->gcount());
        if (inputStream->eof()) break;
    }
    if (inputStream->bad()) throw ReaderError(ReaderError::endOfData);
    position += all.size();
    return all;
}

std::span<const uint8_t> InputStreamSource::readRemaining() {
    rest = readAll();
    return rest;
}

void InputStreamSource::seek(int64_t, Seek) {
    throw ReaderError(ReaderError::randomAccessSeekingNotSupportedBySource);
}

// ---- File ----

namespace {
constexpr size_t fileWindowSize = 1 << 16;
}

std::unique_ptr<FileSource> FileSource::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat info {};
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return nullptr;
    }
    return std::unique_ptr<FileSource>(new FileSource(descriptor, static_cast<size_t>(info.st_size)));
}

FileSource::~FileSource() { ::close(descriptor); }

void FileSource::readAt(size_t offset, uint8_t* target, size_t count) const {
    size_t done = 0;
    while (done < count) {
        const ssize_t got = ::pread(descriptor, target + done, count - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) throw ReaderError(ReaderError::endOfData);
        done += static_cast<size_t>(got);
    }
}

void FileSource::load(size_t count) {
    if (position >= windowStart && position - windowStart + count <= window.size()) return;
    window.resize(std::max(count, std::min(fileWindowSize, size - position)));
    windowStart = position;
    try {
        readAt(position, window.data(), window.size());
    } catch (const ReaderError&) {
        window.clear();
        throw;
    }
}

std::span<const uint8_t> FileSource::readBytes(size_t count) {
    if (count > size - position) throw ReaderError(ReaderError::endOfData);
    load(count);
    const std::span<const uint8_t> range(window.data() + (position - windowStart), count);
    position += count;
    return range;
}

std::vector<uint8_t> FileSource::readAll() {
    std::vector<uint8_t> rest(size - position);
    readAt(position, rest.data(), rest.size());
    position = size;
    return rest;
}

std::span<const uint8_t> FileSource::readRemaining() { return readBytes(size - position); }

void FileSource::seek(int64_t offset, Seek from) { position = seekTarget(offset, from, position, size); }

// ---- Reader ----

BytesReader::BytesReader(std::vector<uint8_t> bytes) : source(std::make_unique<InMemorySource>(std::move(bytes))) {}

BytesReader::BytesReader(std::string_view bytes)
    : BytesReader(std::vector<uint8_t>(bytes.begin(), bytes.end())) {}

BytesReader BytesReader::viewing(std::string_view bytes) {
    BytesReader reader(std::vector<uint8_t>{});
    reader.source = std::make_unique<InMemorySource>(std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()));
    return reader;
}

BytesReader::BytesReader(std::unique_ptr<std::istream> inputStream)
    : source(std::make_unique<InputStreamSource>(std::move(inputStream))) {}

BytesReader BytesReader::fromFileURL(const std::string& url) {
    std::string path = url;
    if (path.starts_with("file://")) {
        path.erase(0, 7);
    } else if (path.find("://") != std::string::npos) {
        throw ReaderError(ReaderError::invalidFile);
    }
    if (path.empty() || std::filesystem::is_directory(path)) throw ReaderError(ReaderError::invalidFile);
    auto stream = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!stream->is_open()) throw ReaderError(ReaderError::invalidFile);
    return BytesReader(std::unique_ptr<std::istream>(std::move(stream)));
}

std::vector<uint8_t> BytesReader::readBytes(int64_t count) {
    if (count <= 0) return {};
    const auto bytes = source->readBytes(static_cast<size_t>(count));
    return {bytes.begin(), bytes.end()};
}

namespace {
std::string decodedOrThrow(std::span<const uint8_t> bytes, TextEncoding encoding) {
    std::string text;
    if (!decodeText(bytes, encoding, text)) throw ReaderError(ReaderError::invalidStringEncoding);
    return text;
}

bool isWide(TextEncoding encoding) {
    return encoding == TextEncoding::utf16BigEndian || encoding == TextEncoding::utf16LittleEndian;
}
}  // namespace

std::string BytesReader::readString(TextEncoding encoding, int64_t byteLength, bool stripTerminator) {
    if (byteLength <= 0) return {};
    auto bytes = source->readBytes(static_cast<size_t>(byteLength));
    if (stripTerminator && bytes.back() == 0) bytes = bytes.first(bytes.size() - 1);
    return decodedOrThrow(bytes, encoding);
}

std::string BytesReader::readNullTerminatedString(TextEncoding encoding) {
    std::vector<uint8_t> collected;
    while (true) {
        uint8_t byte;
        try {
            byte = source->readByte();
        } catch (const ReaderError&) {
            break;  // an unterminated string at the end of the data reads as far as it goes
        }
        if (byte == 0) break;
        collected.push_back(byte);
    }
    return decodedOrThrow(collected, encoding);
}

std::string BytesReader::readUTF16String(size_t codeUnitCount, TextEncoding encoding) {
    if (!isWide(encoding)) throw ReaderError(ReaderError::invalidStringEncoding);
    if (codeUnitCount > SIZE_MAX / 2) throw ReaderError(ReaderError::endOfData);
    return decodedOrThrow(source->readBytes(codeUnitCount * 2), encoding);
}

std::string BytesReader::readWideNullTerminatedString(TextEncoding encoding) {
    if (!isWide(encoding)) throw ReaderError(ReaderError::invalidStringEncoding);
    std::vector<uint8_t> collected;
    collected.reserve(1024);
    while (true) {
        std::span<const uint8_t> unit;
        try {
            unit = source->readBytes(2);
        } catch (const ReaderError&) {
            break;
        }
        if (unit[0] == 0 && unit[1] == 0) break;
        collected.insert(collected.end(), unit.begin(), unit.end());
    }
    return decodedOrThrow(collected, encoding);
}

std::string BytesReader::readPascalUTF16String() {
    const auto count = readInteger<uint32_t>(Endianness::big);
    auto bytes = source->readBytes(size_t{count} * 2);
    // Dropping a trailing 0 byte leaves an odd tail; the unit it belonged to is not decoded.
    if (!bytes.empty() && bytes.back() == 0) bytes = bytes.first((bytes.size() - 1) & ~size_t{1});
    std::string text;
    return decodeText(bytes, TextEncoding::utf16BigEndian, text) ? text : std::string();
}

}  // namespace BytesParser
