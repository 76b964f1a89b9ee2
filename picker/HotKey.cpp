#include "picker/HotKey.h"

#include <array>

#include "library/JsonDecode.h"

namespace kro {
namespace {

constexpr std::array<const char*, kHotKeyIdentifierCount> kIdentifierNames = {
    "unknown", "quitApp", "openPicker", "openColorPanel", "openStatusMenu", "openMainMenu", "openContrastChecker",
    "getPrimaryColor", "getSecondaryColor", "pickColorEnter", "pickColorSpace", "closePicker",
    "moveLeft1px", "moveUp1px", "moveRight1px", "moveDown1px", "moveLeft10px", "moveUp10px", "moveRight10px",
    "moveDown10px", "increasePickerSize", "decreasePickerSize", "increasePickerZoom", "decreasePickerZoom",
    "toggleColorDock"};

constexpr std::array<const char*, 6> kGroupNames = {"unknown", "general", "picker", "zoom_size", "color_dock", "extensions"};
constexpr std::array<const char*, 6> kGroupTitles = {"", "General", "Picker", "Zoom & Size", "Color Dock", "Extensions"};

const Json& required(const Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) throw JsonDecodeError(std::string("hot key: missing \"") + key + "\"");
    return *found;
}

template <class T>
T requiredValue(const Json& object, const char* key, bool (Json::*isType)() const noexcept) {
    const auto& value = required(object, key);
    if (!(value.*isType)()) throw JsonDecodeError(std::string("hot key: \"") + key + "\" has the wrong type");
    return value.get<T>();
}

int requiredInteger(const Json& object, const char* key) {
    const auto& value = required(object, key);
    if (!value.is_number_integer()) throw JsonDecodeError(std::string("hot key: \"") + key + "\" is not an integer");
    const auto number = value.get<long long>();
    if (number < INT32_MIN || number > INT32_MAX) throw JsonDecodeError(std::string("hot key: \"") + key + "\" is out of range");
    return static_cast<int>(number);
}

}  // namespace

std::string text(HotKeyIdentifier identifier) { return kIdentifierNames[static_cast<size_t>(identifier)]; }

std::optional<HotKeyIdentifier> hotKeyIdentifierFromText(const std::string& value) {
    for (size_t i = 0; i < kIdentifierNames.size(); ++i) {
        if (value == kIdentifierNames[i]) return static_cast<HotKeyIdentifier>(i);
    }
    return std::nullopt;
}

HotKeyIdentifier hotKeyIdentifier(int rawValue) {
    if (rawValue < 0 || rawValue >= kHotKeyIdentifierCount) return HotKeyIdentifier::unknown;
    return static_cast<HotKeyIdentifier>(rawValue);
}

std::string text(HotKeyGroupIdentifier group) { return kGroupNames[static_cast<size_t>(group)]; }
std::string title(HotKeyGroupIdentifier group) { return kGroupTitles[static_cast<size_t>(group)]; }

std::optional<HotKeyGroupIdentifier> hotKeyGroupFromText(const std::string& value) {
    for (size_t i = 0; i < kGroupNames.size(); ++i) {
        if (value == kGroupNames[i]) return static_cast<HotKeyGroupIdentifier>(i);
    }
    return std::nullopt;
}

Json HotKey::toJson() const {
    return Json{{"id", text(id)},           {"name", name},       {"index", index},
                {"flags", flags},           {"code", code},       {"readonly", readonly},
                {"global", global},         {"visible", visible}, {"state", state == HotKeyState::enabled ? "enabled" : "disabled"},
                {"deleted", deleted},       {"group", text(group)}};
}

HotKey HotKey::fromJson(const Json& json) {
    const auto& object = json_decode::object(json, "hot key");
    HotKey key;
    const auto id = hotKeyIdentifierFromText(requiredValue<std::string>(object, "id", &Json::is_string));
    if (!id) throw JsonDecodeError("hot key: unknown \"id\"");
    key.id = *id;
    key.name = requiredValue<std::string>(object, "name", &Json::is_string);
    key.index = requiredInteger(object, "index");
    key.flags = requiredInteger(object, "flags");
    key.code = requiredInteger(object, "code");
    key.readonly = requiredValue<bool>(object, "readonly", &Json::is_boolean);
    key.global = requiredValue<bool>(object, "global", &Json::is_boolean);
    key.visible = requiredValue<bool>(object, "visible", &Json::is_boolean);
    const auto state = requiredValue<std::string>(object, "state", &Json::is_string);
    if (state != "enabled" && state != "disabled") throw JsonDecodeError("hot key: unknown \"state\"");
    key.state = state == "enabled" ? HotKeyState::enabled : HotKeyState::disabled;
    key.deleted = requiredValue<bool>(object, "deleted", &Json::is_boolean);
    const auto group = hotKeyGroupFromText(requiredValue<std::string>(object, "group", &Json::is_string));
    if (!group) throw JsonDecodeError("hot key: unknown \"group\"");
    key.group = *group;
    return key;
}

std::string encodeHotKeys(const std::vector<HotKey>& hotKeys) {
    Json array = Json::array();
    for (const auto& key : hotKeys) array.push_back(key.toJson());
    return compactText(array);
}

std::vector<HotKey> decodeHotKeys(std::string_view bytes) {
    const Json json = parseJson(bytes);
    if (!json.is_array()) throw JsonDecodeError("hot keys: not an array");
    std::vector<HotKey> keys;
    keys.reserve(json.size());
    for (const auto& item : json) keys.push_back(HotKey::fromJson(item));
    return keys;
}

}  // namespace kro
