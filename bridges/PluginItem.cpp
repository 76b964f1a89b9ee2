#include "bridges/PluginItem.h"

#include <algorithm>
#include <cctype>

#include "bridges/Bridge.h"
#include "library/JsonDecode.h"
#include "platform/Crypto.h"

namespace kro {
namespace {

PluginItemFunctionMap functionMap(const Json& object, const char* key) {
    PluginItemFunctionMap map;
    const Json* value = json_decode::member(object, key);
    if (!value) return map;
    for (const auto& [name, entry] : json_decode::object(*value, key).items()) {
        if (!entry.is_string()) throw JsonDecodeError(std::string(key) + " holds a value that is not text");
        map[name] = entry.get<std::string>();
    }
    return map;
}

// A PNG whose header names a picture of some size: enough for a menu to show it.
bool isImage(const std::string& bytes) {
    static constexpr std::string_view signature("\x89PNG\r\n\x1a\n", 8);
    if (bytes.size() < 24 || bytes.compare(0, signature.size(), signature) != 0) return false;
    if (bytes.compare(12, 4, "IHDR") != 0) return false;
    const auto word = [&bytes](size_t at) {
        uint32_t value = 0;
        for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
        return value;
    };
    return word(16) > 0 && word(20) > 0;
}

}  // namespace

std::optional<PluginItemFunction> pluginItemFunction(const std::string& text) {
    if (text == "copy") return PluginItemFunction::copy;
    if (text == "paste") return PluginItemFunction::paste;
    if (text == "bridge") return PluginItemFunction::bridge;
    return std::nullopt;
}

std::optional<PluginItemFunction> functionOf(const PluginItemFunctionMap& map) {
    const auto found = map.find("function");
    return found == map.end() ? std::nullopt : pluginItemFunction(found->second);
}

bool PluginItem::matches(const RunningApplication& application) const {
    if (bundle && !application.desktopId.empty() && *bundle == application.desktopId) return true;
    const auto instance = lowerCase(application.windowInstance);
    const auto windowClass = lowerCase(application.windowClass);
    return std::any_of(windowClasses.begin(), windowClasses.end(), [&](const std::string& known) {
        const auto folded = lowerCase(known);
        return !folded.empty() && (folded == windowClass || folded == instance);
    });
}

std::optional<std::string> PluginItem::iconImage() const {
    if (!icon) return std::nullopt;
    auto bytes = base64Decode(*icon);
    if (!bytes || !isImage(*bytes)) return std::nullopt;
    return bytes;
}

PluginItem PluginItem::fromJson(const Json& json) {
    const auto& object = json_decode::object(json, "PluginItem");
    PluginItem item;
    item.bundle = json_decode::text(object, "bundle");
    item.getPrimaryColor = functionMap(object, "getPrimaryColor");
    item.getSecondaryColor = functionMap(object, "getSecondaryColor");
    item.icon = json_decode::text(object, "icon");
    item.name = json_decode::text(object, "name");
    item.setPrimaryColor = functionMap(object, "setPrimaryColor");
    item.setSecondaryColor = functionMap(object, "setSecondaryColor");
    item.windowClasses = json_decode::texts(object, "windowClasses").value_or(std::vector<std::string>{});
    return item;
}

}  // namespace kro
