// Writing a zip archive: each file is compressed first, so its local header already holds its CRC and
// sizes and no data descriptor follows; the central directory and end record close the archive.
#include <zlib.h>

#include <algorithm>

#include "exchange/BytesWriter.h"
#include "exchange/PalErrors.h"
#include "exchange/Zip.h"
#include "exchange/ZipLayout.h"

namespace PAL::zip {

namespace {

using BytesParser::BytesWriter;
using BytesParser::Endianness;

[[noreturn]] void fail() { throw CommonError(CommonError::Case::cannotGenerateOutputZip); }

constexpr std::uint16_t versionNeeded = 20;  // deflate
// Made on Unix, zip 2.0, so that unzip gives the files ordinary permissions (a regular file, rw-r--r--).
constexpr std::uint16_t versionMadeBy = 3 << 8 | 20;
constexpr std::uint32_t externalAttributes = 0100644u << 16;
// Every entry carries the same fixed time, 1980-01-01 00:00, so that one palette always gives the
// same bytes: the file's own modification time is what a user sees.
constexpr std::uint16_t dosTime = 0;
constexpr std::uint16_t dosDate = (0 << 9) | (1 << 5) | 1;

struct PreparedFile {
    const FileToWrite* file;
    std::string compressed;  // empty for a stored file, whose data is written as given
    std::uint32_t crc32 = 0;
    std::uint32_t offset = 0;

    std::string_view data() const { return file->method == Method::stored ? file->data : std::string_view(compressed); }
    std::uint16_t flags() const {
        const auto ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
        return std::all_of(file->name.begin(), file->name.end(), ascii) ? 0 : layout::utf8NameFlag;
    }
};

std::string deflated(std::string_view data) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) fail();
    const uLong bound = deflateBound(&stream, data.size());
    if (bound > layout::zip64Marker32) {
        deflateEnd(&stream);
        fail();
    }
    std::string out(bound, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int status = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END) fail();
    return out;
}

// The fields that the local header and the central directory header share, from "version needed" on.
void writeCommonFields(BytesWriter& out, const PreparedFile& file) {
    out.writeInteger<std::uint16_t>(versionNeeded, Endianness::little);
    out.writeInteger<std::uint16_t>(file.flags(), Endianness::little);
    out.writeInteger<std::uint16_t>(static_cast<std::uint16_t>(file.file->method), Endianness::little);
    out.writeInteger<std::uint16_t>(dosTime, Endianness::little);
    out.writeInteger<std::uint16_t>(dosDate, Endianness::little);
    out.writeInteger<std::uint32_t>(file.crc32, Endianness::little);
    out.writeInteger<std::uint32_t>(static_cast<std::uint32_t>(file.data().size()), Endianness::little);
    out.writeInteger<std::uint32_t>(static_cast<std::uint32_t>(file.file->data.size()), Endianness::little);
    out.writeInteger<std::uint16_t>(static_cast<std::uint16_t>(file.file->name.size()), Endianness::little);
    out.writeInteger<std::uint16_t>(0, Endianness::little);  // extra field length
}

std::uint32_t offsetOf(const BytesWriter& out) {
    if (out.count() >= layout::zip64Marker32) fail();
    return static_cast<std::uint32_t>(out.count());
}

}  // namespace

std::string write(const std::vector<FileToWrite>& files) {
    if (files.size() >= layout::zip64Marker16) fail();
    std::vector<PreparedFile> prepared;
    prepared.reserve(files.size());
    BytesWriter out;
    for (const FileToWrite& file : files) {
        if (layout::leavesArchive(file.name) || file.name.size() > 0xFFFF || file.data.size() >= layout::zip64Marker32) fail();
        PreparedFile entry{&file, {}, layout::checksum(file.data)};
        if (file.method == Method::deflated) entry.compressed = deflated(file.data);
        entry.offset = offsetOf(out);
        out.writeInteger<std::uint32_t>(layout::localSignature, Endianness::little);
        writeCommonFields(out, entry);
        out.writeBytes(file.name);
        out.writeBytes(entry.data());
        prepared.push_back(std::move(entry));
    }

    const std::uint32_t directoryOffset = offsetOf(out);
    for (const PreparedFile& entry : prepared) {
        out.writeInteger<std::uint32_t>(layout::centralSignature, Endianness::little);
        out.writeInteger<std::uint16_t>(versionMadeBy, Endianness::little);
        writeCommonFields(out, entry);
        out.writeInteger<std::uint16_t>(0, Endianness::little);  // comment length
        out.writeInteger<std::uint16_t>(0, Endianness::little);  // disk number
        out.writeInteger<std::uint16_t>(0, Endianness::little);  // internal attributes
        out.writeInteger<std::uint32_t>(externalAttributes, Endianness::little);
        out.writeInteger<std::uint32_t>(entry.offset, Endianness::little);
        out.writeBytes(entry.file->name);
    }
    const std::uint32_t directorySize = offsetOf(out) - directoryOffset;

    const auto count = static_cast<std::uint16_t>(files.size());
    out.writeInteger<std::uint32_t>(layout::endSignature, Endianness::little);
    out.writeInteger<std::uint16_t>(0, Endianness::little);  // this disk
    out.writeInteger<std::uint16_t>(0, Endianness::little);  // the disk holding the directory
    out.writeInteger<std::uint16_t>(count, Endianness::little);
    out.writeInteger<std::uint16_t>(count, Endianness::little);
    out.writeInteger<std::uint32_t>(directorySize, Endianness::little);
    out.writeInteger<std::uint32_t>(directoryOffset, Endianness::little);
    out.writeInteger<std::uint16_t>(0, Endianness::little);  // comment length
    return out.data();
}

}  // namespace PAL::zip
