#include "formats/SmartItems.h"

#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "library/Preferences.h"
#include "platform/Environment.h"

namespace kro {

namespace {
// The keys both records share, around the one that differs.
template <class Item>
void decodeCommon(const Json& object, Item& item) {
    using namespace json_decode;
    if (auto value = text(object, "name")) item.name = *value;
    if (auto value = boolean(object, "enabled")) item.enabled = *value;
    if (auto value = text(object, "createdAt")) item.createdAt = *value;
    item.updatedAt = text(object, "updatedAt");
}

template <class Item>
void encodeCommonTail(Json& json, const Item& item) {
    json["enabled"] = item.enabled;
    json["createdAt"] = item.createdAt;
    if (item.updatedAt) json["updatedAt"] = *item.updatedAt;
}
}  // namespace

const char* const SmartFormatItem::loadedNotification = Notifications::smartFormatsLoaded;
const char* const SmartFormatItem::savedNotification = Notifications::smartFormatsSaved;
const char* const SmartFormatItem::updatedNotification = Notifications::smartFormatsUpdated;
const char* const SmartProfileItem::loadedNotification = Notifications::smartProfilesLoaded;
const char* const SmartProfileItem::savedNotification = Notifications::smartProfilesSaved;
const char* const SmartProfileItem::updatedNotification = Notifications::smartProfilesUpdated;

bool SmartFormatItem::switchedOn() { return Preferences::shared().smartFormats(); }
bool SmartProfileItem::switchedOn() { return Preferences::shared().smartProfiles(); }

SmartFormatItem::SmartFormatItem() : createdAt(dateText(env().clock->now())) {}
SmartProfileItem::SmartProfileItem() : createdAt(dateText(env().clock->now())) {}

Json SmartFormatItem::toJson() const {
    Json json;
    json["name"] = name;
    json["format"] = format;
    encodeCommonTail(json, *this);
    return json;
}

std::shared_ptr<SmartFormatItem> SmartFormatItem::fromJson(const Json& json) {
    const auto& object = json_decode::object(json, "a smart format");
    auto item = std::make_shared<SmartFormatItem>();
    decodeCommon(object, *item);
    if (auto value = json_decode::text(object, "format")) item->format = *value;
    return item;
}

Json SmartProfileItem::toJson() const {
    Json json;
    json["name"] = name;
    json["profile"] = text(profile);
    encodeCommonTail(json, *this);
    return json;
}

std::shared_ptr<SmartProfileItem> SmartProfileItem::fromJson(const Json& json) {
    const auto& object = json_decode::object(json, "a smart profile");
    auto item = std::make_shared<SmartProfileItem>();
    decodeCommon(object, *item);
    if (auto value = json_decode::text(object, "profile")) {
        const auto profile = colorSpaceProfileFromText(*value);
        if (!profile) throw JsonDecodeError("unknown color profile \"" + *value + "\"");
        item->profile = *profile;
    }
    return item;
}

}  // namespace kro
