#pragma once
// What the registry knows of one design application: how to find it on the desktop, how to read and set
// its two colours, and its icon.
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ActiveApplication.h"
#include "platform/ColorValue.h"
#include "platform/Json.h"

namespace kro {

// How one colour operation is carried out. `copy` and `paste` simulate the keys in the application in front;
// `bridge` speaks to the application through the bridge that the item's name selects.
enum class PluginItemFunction { copy, paste, bridge };

std::optional<PluginItemFunction> pluginItemFunction(const std::string& text);

// Each map's key "function" holds the function.
using PluginItemFunctionMap = std::map<std::string, std::string>;

struct PluginItem {
    // The desktop-file id, also the key of the application's smart format.
    std::optional<std::string> bundle;
    PluginItemFunctionMap getPrimaryColor;
    PluginItemFunctionMap getSecondaryColor;
    // Base64 PNG of the application's icon.
    std::optional<std::string> icon;
    // Also selects the bridge: "GIMP", "Inkscape", "Krita".
    std::optional<std::string> name;
    PluginItemFunctionMap setPrimaryColor;
    PluginItemFunctionMap setSecondaryColor;
    // WM_CLASS halves (instance or class, any case) the application's windows carry.
    std::vector<std::string> windowClasses;

    // Whether a window of this application is the given one: by desktop-file id, else by WM_CLASS.
    bool matches(const RunningApplication& application) const;
    // The PNG bytes of the icon, when it decodes to an image.
    std::optional<std::string> iconImage() const;

    // Missing keys are empty; a value of the wrong type throws JsonDecodeError.
    static PluginItem fromJson(const Json& json);
};

using PluginItemRef = std::shared_ptr<const PluginItem>;

// The function of a map, when it holds a known one.
std::optional<PluginItemFunction> functionOf(const PluginItemFunctionMap& map);

// What a get returns: the application's icon and the colours read.
struct PluginItemResult {
    std::optional<std::string> icon;
    std::vector<ColorValue> colors;
};

}  // namespace kro
