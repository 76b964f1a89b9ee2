// Reading a zip archive through its central directory: the end record is found from the back of the
// file, the directory names every entry, and each entry's data is found through its local header.
#include <zlib.h>

#include <algorithm>
#include <array>
#include <unordered_set>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/Zip.h"
#include "exchange/ZipLayout.h"

namespace PAL::zip {

namespace {

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// Little-endian fields, bounds-checked: a field past the end of the archive is a broken archive.
std::uint16_t u16(std::string_view bytes, std::size_t at) {
    if (at > bytes.size() || bytes.size() - at < 2) refuse();
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.data() + at);
    return static_cast<std::uint16_t>(b[0] | b[1] << 8);
}

std::uint32_t u32(std::string_view bytes, std::size_t at) {
    return u16(bytes, at) | static_cast<std::uint32_t>(u16(bytes, at + 2)) << 16;
}

// The end record closest to the end whose comment fills the rest of the file; failing that, the last
// one whose comment fits (an archive followed by padding). A signature inside a comment is not taken
// for the record as long as the real one ends the file.
std::size_t endRecordPosition(std::string_view archive) {
    if (archive.size() < layout::endRecordSize) refuse();
    const std::size_t last = archive.size() - layout::endRecordSize;
    const std::size_t first = last > layout::maximumCommentSize ? last - layout::maximumCommentSize : 0;
    std::optional<std::size_t> padded;
    for (std::size_t at = last + 1; at-- > first;) {
        if (u32(archive, at) != layout::endSignature) continue;
        const std::size_t end = at + layout::endRecordSize + u16(archive, at + 20);
        if (end == archive.size()) return at;
        if (end < archive.size() && !padded) padded = at;
    }
    if (!padded) refuse();
    return *padded;
}

std::string inflated(std::string_view compressed, std::uint32_t expectedSize) {
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) refuse();
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.data()));
    stream.avail_in = static_cast<uInt>(compressed.size());
    std::string out;
    // Deflate cannot expand data more than about 1032 to 1, so this never trusts the declared size
    // beyond what the compressed bytes could really hold.
    out.reserve(std::min<std::size_t>(expectedSize, compressed.size() * 1032 + 64));
    std::array<char, 64 * 1024> chunk;
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(chunk.data(), chunk.size() - stream.avail_out);
        if (out.size() > expectedSize) break;  // more than declared: stop before it grows further
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END || out.size() != expectedSize) refuse();
    return out;
}

Entry centralEntry(std::string_view record) {
    Entry entry;
    entry.flags = u16(record, 8);
    entry.method = u16(record, 10);
    entry.crc32 = u32(record, 16);
    entry.compressedSize = u32(record, 20);
    entry.size = u32(record, 24);
    entry.localHeaderOffset = u32(record, 42);
    entry.name = std::string(record.substr(layout::centralHeaderSize, u16(record, 28)));
    return entry;
}

}  // namespace

// Absolute paths ("/x", "C:x", "\x"), any ".." component and embedded NULs: names that would reach
// outside a folder the archive was unpacked into.
bool layout::leavesArchive(std::string_view name) {
    if (name.empty() || name.front() == '/' || name.front() == '\\') return true;
    if (name.size() >= 2 && name[1] == ':') return true;
    if (name.find('\0') != std::string_view::npos) return true;
    std::size_t start = 0;
    while (start <= name.size()) {
        const std::size_t end = std::min(name.find_first_of("/\\", start), name.size());
        if (name.substr(start, end - start) == "..") return true;
        start = end + 1;
    }
    return false;
}

Reader::Reader(std::string_view archive) : archive_(archive) {
    const std::size_t end = endRecordPosition(archive);
    const std::uint16_t disk = u16(archive, end + 4), directoryDisk = u16(archive, end + 6);
    const std::uint16_t entriesOnDisk = u16(archive, end + 8), entryCount = u16(archive, end + 10);
    const std::uint32_t directorySize = u32(archive, end + 12), directoryOffset = u32(archive, end + 16);
    if (disk != 0 || directoryDisk != 0 || entriesOnDisk != entryCount) refuse();
    if (entryCount == layout::zip64Marker16 || directorySize == layout::zip64Marker32 || directoryOffset == layout::zip64Marker32)
        refuse();
    if (std::size_t(directoryOffset) + directorySize > end) refuse();

    const std::string_view directory = archive.substr(directoryOffset, directorySize);
    std::unordered_set<std::string_view> names;  // views into the archive, which outlives the set
    std::size_t at = 0;
    for (std::uint16_t i = 0; i < entryCount; ++i) {
        if (u32(directory, at) != layout::centralSignature) refuse();
        const std::size_t recordSize = layout::centralHeaderSize + std::size_t(u16(directory, at + 28)) + u16(directory, at + 30) +
                                       u16(directory, at + 32);
        if (recordSize > directory.size() - at) refuse();
        Entry entry = centralEntry(directory.substr(at, recordSize));
        if (entry.compressedSize == layout::zip64Marker32 || entry.size == layout::zip64Marker32 ||
            entry.localHeaderOffset == layout::zip64Marker32)
            refuse();
        const std::string_view name = directory.substr(at + layout::centralHeaderSize, entry.name.size());
        if (layout::leavesArchive(name) || !names.insert(name).second) refuse();
        entries_.push_back(std::move(entry));
        at += recordSize;
    }
}

const Entry* Reader::find(std::string_view name) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.name == name; });
    return found == entries_.end() ? nullptr : &*found;
}

std::string Reader::read(const Entry& entry) const {
    if (entry.flags & layout::encryptedFlag) refuse();
    if (entry.method != std::uint16_t(Method::stored) && entry.method != std::uint16_t(Method::deflated)) refuse();
    if (entry.size > maximumEntrySize) refuse();

    // The local header's extra field may differ in length from the central one, so its own lengths place the data.
    const std::size_t local = entry.localHeaderOffset;
    if (u32(archive_, local) != layout::localSignature) refuse();
    const std::size_t dataStart = local + layout::localHeaderSize + u16(archive_, local + 26) + u16(archive_, local + 28);
    if (dataStart > archive_.size() || archive_.size() - dataStart < entry.compressedSize) refuse();
    const std::string_view data = archive_.substr(dataStart, entry.compressedSize);

    std::string bytes;
    if (entry.method == std::uint16_t(Method::stored)) {
        if (entry.compressedSize != entry.size) refuse();
        bytes = std::string(data);
    } else {
        bytes = inflated(data, entry.size);
    }
    if (layout::checksum(bytes) != entry.crc32) refuse();
    return bytes;
}

std::optional<std::string> Reader::read(std::string_view name) const {
    const Entry* entry = find(name);
    if (!entry) return std::nullopt;
    return read(*entry);
}

std::string readDocument(BytesParser::BytesReader& reader, std::string_view name) {
    const auto bytes = reader.readAll();
    const Reader archive(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    auto document = archive.read(name);
    if (!document) throw CommonError(CommonError::Case::invalidFormat);
    return std::move(*document);
}

}  // namespace PAL::zip
