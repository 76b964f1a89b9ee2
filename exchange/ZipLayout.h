#pragma once
// The record layout of a zip archive that the reader and the writer share: signatures, fixed record
// sizes and the values that mark a field as moved to zip64.
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace PAL::zip::layout {

inline constexpr std::uint32_t localSignature = 0x04034b50;    // "PK\3\4"
inline constexpr std::uint32_t centralSignature = 0x02014b50;  // "PK\1\2"
inline constexpr std::uint32_t endSignature = 0x06054b50;      // "PK\5\6"

inline constexpr std::size_t localHeaderSize = 30;
inline constexpr std::size_t centralHeaderSize = 46;
inline constexpr std::size_t endRecordSize = 22;
inline constexpr std::size_t maximumCommentSize = 0xFFFF;

inline constexpr std::uint16_t encryptedFlag = 1u << 0;
inline constexpr std::uint16_t utf8NameFlag = 1u << 11;

inline constexpr std::uint16_t zip64Marker16 = 0xFFFF;
inline constexpr std::uint32_t zip64Marker32 = 0xFFFFFFFF;

inline std::uint32_t checksum(std::string_view bytes) {
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

// Whether a name would reach outside a folder the archive was unpacked into. Neither side ever
// unpacks, but an archive holding such a name is a hostile one and is refused whole.
bool leavesArchive(std::string_view name);

}  // namespace PAL::zip::layout
