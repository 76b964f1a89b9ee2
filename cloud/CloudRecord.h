#pragma once
// The library as the server keeps it: one JSON document per account, of record type "User", named by the
// account's identifier. The history is not synced: its key is removed on every write. There is no
// "createdAt" key, and a library without `updatedAt` leaves none under "updatedAt" either.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/Palette.h"
#include "platform/Json.h"

namespace kro {

class User;

inline constexpr const char* kCloudRecordType = "User";

struct CloudRecord {
    std::string recordName;
    // Every key as stored; keys this program does not know are written back as they came.
    Json document = Json::object();
    // The server's tag of the version read; none for a record not saved yet.
    std::optional<std::string> etag;

    // A new record of type "User".
    static CloudRecord make(const std::string& recordName);

    // "updatedAt" when it is text; anything else counts as absent.
    std::optional<std::string> updatedAt() const;
    // Puts the library's fields in the document.
    void writeFields(const User& user);
};

// The synced fields of a record, decoded with the records' own decoder.
struct CloudRecordFields {
    std::optional<std::string> uuid;
    std::optional<std::string> paletteUUID;
    // Absent when the record has no "palettes" key.
    std::optional<std::vector<PaletteRef>> palettes;
    std::optional<std::string> updatedAt;
};

// Throws JsonDecodeError when the document is not an object or a field holds a value of the wrong type.
CloudRecordFields decodeCloudRecord(const Json& document);

// A record's bytes as a JSON object; throws JsonDecodeError for anything else.
Json parseCloudDocument(std::string_view bytes);

}  // namespace kro
