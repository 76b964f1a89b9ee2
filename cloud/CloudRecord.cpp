#include "cloud/CloudRecord.h"

#include "library/JsonDecode.h"
#include "library/User.h"

namespace kro {

CloudRecord CloudRecord::make(const std::string& recordName) {
    CloudRecord record;
    record.recordName = recordName;
    record.document["recordType"] = kCloudRecordType;
    record.document["recordName"] = recordName;
    return record;
}

std::optional<std::string> CloudRecord::updatedAt() const {
    const auto found = document.find("updatedAt");
    if (found == document.end() || !found->is_string()) return std::nullopt;
    return found->get<std::string>();
}

void CloudRecord::writeFields(const User& user) {
    document["uuid"] = user.uuid;
    document.erase("history");
    if (user.paletteUUID) {
        document["paletteUUID"] = *user.paletteUUID;
    } else {
        document.erase("paletteUUID");
    }
    Json palettes = Json::array();
    for (const auto& palette : user.palettes) palettes.push_back(palette->toJson());
    document["palettes"] = std::move(palettes);
    if (user.updatedAt) {
        document["updatedAt"] = *user.updatedAt;
    } else {
        document.erase("updatedAt");
    }
}

CloudRecordFields decodeCloudRecord(const Json& document) {
    using namespace json_decode;
    const auto& o = object(document, "cloud record");
    CloudRecordFields fields;
    fields.uuid = text(o, "uuid");
    fields.paletteUUID = text(o, "paletteUUID");
    if (const Json* palettes = member(o, "palettes")) {
        if (!palettes->is_array()) throw JsonDecodeError("\"palettes\" is not an array");
        std::vector<PaletteRef> decoded;
        decoded.reserve(palettes->size());
        for (const auto& palette : *palettes) decoded.push_back(Palette::fromJson(palette));
        fields.palettes = std::move(decoded);
    }
    fields.updatedAt = text(o, "updatedAt");
    return fields;
}

Json parseCloudDocument(std::string_view bytes) {
    Json document = parseJson(bytes);
    if (!document.is_object()) throw JsonDecodeError("the record is not a JSON object");
    return document;
}

}  // namespace kro
