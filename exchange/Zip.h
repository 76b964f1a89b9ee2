#pragma once
// The zip container of the palette formats that pack their document into an archive (Procreate's
// .swatches, SwatchBooker's .sbz). Only what those archives use: one disk, stored or deflated entries,
// no encryption, no zip64. The whole archive is in memory, as every palette file is.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace BytesParser {
class BytesReader;
}

namespace PAL::zip {

// The largest entry we inflate. A palette document of 100,000 colours is about 25 MB of XML, so
// this leaves room for any real palette while a hostile archive cannot make us allocate gigabytes.
inline constexpr std::size_t maximumEntrySize = 64u << 20;

enum class Method : std::uint16_t { stored = 0, deflated = 8 };

// An entry as the central directory lists it.
struct Entry {
    std::string name;  // bytes as stored (UTF-8 in the archives we meet); compared exactly
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t crc32 = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t size = 0;
    std::uint32_t localHeaderOffset = 0;
};

// Reads an archive's central directory at construction; entries are inflated on request.
class Reader {
public:
    // `archive` must outlive the reader. Throws CommonError invalidFormat when the bytes are not a zip
    // archive we can read: no end record, a central directory outside the file, more than one disk,
    // zip64, two entries of one name, or an entry whose path would leave the archive ("../x", "/x").
    explicit Reader(std::string_view archive);

    const std::vector<Entry>& entries() const { return entries_; }
    const Entry* find(std::string_view name) const;

    // The entry's bytes, its size and CRC-32 checked. Throws CommonError invalidFormat for an encrypted
    // entry, a method other than stored or deflated, data outside the file, a broken deflate stream,
    // a size above maximumEntrySize, or a CRC or size that does not match.
    std::string read(const Entry& entry) const;
    // The named entry's bytes; nullopt when the archive has no such entry.
    std::optional<std::string> read(std::string_view name) const;

private:
    std::string_view archive_;
    std::vector<Entry> entries_;
};

// The one document a palette package is read for, from the whole stream. Throws CommonError invalidFormat
// when the bytes are not an archive or it has no entry of that name.
std::string readDocument(BytesParser::BytesReader& reader, std::string_view name);

struct FileToWrite {
    std::string name;
    std::string_view data;
    Method method = Method::deflated;
};

// An archive holding the files in the given order, every size known up front (no data descriptors).
// Throws CommonError cannotGenerateOutputZip when a file cannot be stored without zip64 (4 GiB),
// has an empty, overlong or unsafe name, or deflate fails.
std::string write(const std::vector<FileToWrite>& files);

}  // namespace PAL::zip
