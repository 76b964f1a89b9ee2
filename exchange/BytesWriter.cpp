#include "exchange/BytesWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace BytesParser {

const char* WriterError::what() const noexcept {
    switch (code) {
        case cannotConvertStringEncoding: return "WriterError.cannotConvertStringEncoding";
        case cannotOpenOutputFile: return "WriterError.cannotOpenOutputFile";
        case unableToWriteBytes: return "WriterError.unableToWriteBytes";
        case emptyBuffer: return "WriterError.emptyBuffer";
        case notSupported: return "WriterError.notSupported";
        case noDataAvailable: return "WriterError.noDataAvailable";
        case invalidByteString: return "WriterError.invalidByteString";
    }
    return "WriterError";
}

namespace {
// Next code point of valid UTF-8 (validity is checked first by decodeText).
char32_t nextCodePoint(std::string_view text, size_t& i) {
    const auto lead = static_cast<uint8_t>(text[i]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = length == 1 ? lead : lead & (0x7F >> length);
    for (size_t k = 1; k < length; ++k) c = (c << 6) | (static_cast<uint8_t>(text[i + k]) & 0x3F);
    i += length;
    return c;
}

void appendUnit(std::vector<uint8_t>& out, char16_t unit, bool bigEndian) {
    const auto high = static_cast<uint8_t>(unit >> 8), low = static_cast<uint8_t>(unit & 0xFF);
    out.push_back(bigEndian ? high : low);
    out.push_back(bigEndian ? low : high);
}
}  // namespace

bool encodeText(std::string_view text, TextEncoding encoding, std::vector<uint8_t>& out) {
    out.clear();
    std::string check;
    const std::span<const uint8_t> bytes(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    if (!decodeText(bytes, TextEncoding::utf8, check)) return false;
    const bool bigEndian = encoding == TextEncoding::utf16BigEndian;
    for (size_t i = 0; i < text.size();) {
        const char32_t c = nextCodePoint(text, i);
        switch (encoding) {
            case TextEncoding::ascii:
                if (c >= 0x80) return false;
                out.push_back(static_cast<uint8_t>(c));
                break;
            case TextEncoding::isoLatin1:
                if (c >= 0x100) return false;
                out.push_back(static_cast<uint8_t>(c));
                break;
            case TextEncoding::utf8: break;
            case TextEncoding::utf16BigEndian:
            case TextEncoding::utf16LittleEndian:
                if (c >= 0x10000) {
                    appendUnit(out, static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)), bigEndian);
                    appendUnit(out, static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)), bigEndian);
                } else {
                    appendUnit(out, static_cast<char16_t>(c), bigEndian);
                }
                break;
        }
    }
    if (encoding == TextEncoding::utf8) out.assign(bytes.begin(), bytes.end());
    return true;
}

BytesWriter BytesWriter::toFileURL(const std::string& url) {
    std::string path = url;
    if (path.starts_with("file://")) {
        path.erase(0, 7);
    } else if (path.find("://") != std::string::npos) {
        throw WriterError(WriterError::cannotOpenOutputFile);
    }
    if (path.empty() || std::filesystem::is_directory(path)) throw WriterError(WriterError::cannotOpenOutputFile);
    BytesWriter writer;
    writer.filePath = path;
    writer.temporaryPath = path + ".partial-" + std::to_string(getpid());
    writer.file.open(writer.temporaryPath, std::ios::binary | std::ios::trunc);
    if (!writer.file.is_open()) throw WriterError(WriterError::cannotOpenOutputFile);
    return writer;
}

BytesWriter::BytesWriter(BytesWriter&& other) noexcept
    : memory(std::move(other.memory)),
      file(std::move(other.file)),
      filePath(std::move(other.filePath)),
      temporaryPath(std::move(other.temporaryPath)),
      written(other.written) {
    other.temporaryPath.clear();
}

BytesWriter::~BytesWriter() {
    if (!temporaryPath.empty()) {  // never finished: the target keeps its old contents
        file.close();
        std::remove(temporaryPath.c_str());
    }
}

void BytesWriter::writeBytes(std::span<const uint8_t> bytes) {
    if (bytes.empty()) return;
    if (filePath.empty()) {
        memory.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    } else {
        if (temporaryPath.empty()) throw WriterError(WriterError::unableToWriteBytes);  // already finished
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file) throw WriterError(WriterError::unableToWriteBytes);
    }
    written += bytes.size();
}

void BytesWriter::writeString(std::string_view text, TextEncoding encoding, bool includeTerminator) {
    std::vector<uint8_t> bytes;
    if (!encodeText(text, encoding, bytes)) throw WriterError(WriterError::cannotConvertStringEncoding);
    if (includeTerminator) bytes.push_back(0);
    writeBytes(bytes);
}

const std::string& BytesWriter::data() const {
    if (!filePath.empty()) throw WriterError(WriterError::notSupported);
    return memory;
}

void BytesWriter::finish() {
    if (filePath.empty() || temporaryPath.empty()) return;
    file.close();
    if (file.fail()) throw WriterError(WriterError::unableToWriteBytes);
    // On disk before the rename, so a crash never leaves a half-written file under the real name.
    const int descriptor = ::open(temporaryPath.c_str(), O_RDONLY);
    const bool synced = descriptor >= 0 && ::fsync(descriptor) == 0;
    if (descriptor >= 0) ::close(descriptor);
    if (!synced) throw WriterError(WriterError::unableToWriteBytes);
    std::error_code error;
    std::filesystem::rename(temporaryPath, filePath, error);
    if (error) throw WriterError(WriterError::unableToWriteBytes);
    temporaryPath.clear();
}

}  // namespace BytesParser
