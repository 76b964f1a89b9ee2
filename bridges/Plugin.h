#pragma once
// The registry of design applications: for each one Kro can exchange colours with, how it is found on the
// desktop and how its primary and secondary colours are read and set. It follows the application in front,
// so that `current` is that application's entry, or nothing.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bridges/Bridge.h"
#include "bridges/PluginItem.h"
#include "platform/ActiveApplication.h"
#include "platform/BridgeChannels.h"
#include "platform/Desktop.h"

namespace kro {

struct PluginServices {
    ActiveApplicationMonitor* applications = nullptr;
    SessionBus* sessionBus = nullptr;
    DropFolder* dropFolder = nullptr;
    LocalSocketClient* localSockets = nullptr;
    const Clipboard* clipboard = nullptr;
};

class Plugin {
public:
    // Nothing when there is no application to ask; else its icon and the colours read (empty on failure).
    using GetDone = std::function<void(const std::optional<PluginItemResult>& result)>;
    using SetDone = std::function<void(bool success)>;

    // An entry and, when one is on screen, a window of its application.
    struct Target {
        PluginItemRef item;
        std::optional<RunningApplication> application;
    };

    static Plugin& shared();
    static void resetSharedForTesting();

    void setServices(const PluginServices& services) { services_ = services; }
    // The entries of the resource "Plugin.json"; then "PluginsLoaded" and "PluginsUpdated" are posted.
    void load();
    // Entries from JSON text: an object from bundle identifier to entry. Text that does not decode leaves
    // the registry empty, with a log line.
    void load(std::string_view json);
    // Follows the application in front from now on.
    void startTracking();
    void applicationDidActivate(const std::optional<RunningApplication>& application);

    // The entry named by desktop-file id or by name (any case), else the current one; nothing when there
    // is none.
    std::optional<Target> target(const std::optional<std::string>& application = std::nullopt) const;

    void getPrimaryColor(GetDone done) { getColor(target(), PickerPlugin::primary, std::move(done)); }
    void getSecondaryColor(GetDone done) { getColor(target(), PickerPlugin::secondary, std::move(done)); }
    void setPrimaryColor(const ColorValue& color, SetDone done) { setColor(target(), PickerPlugin::primary, color, std::move(done)); }
    void setSecondaryColor(const ColorValue& color, SetDone done) {
        setColor(target(), PickerPlugin::secondary, color, std::move(done));
    }
    void getColor(const std::optional<Target>& target, PickerPlugin slot, GetDone done);
    void setColor(const std::optional<Target>& target, PickerPlugin slot, const ColorValue& color, SetDone done);

    std::optional<RunningApplication> currentRunningApplication;
    std::map<std::string, PluginItemRef> plugins;
    PluginItemRef current;

private:
    Bridge* bridgeFor(const PluginItem& item);
    // Brings the target's window to the front when another one is there, for simulated keys.
    void activate(const Target& target);

    PluginServices services_;
    std::map<std::string, std::unique_ptr<Bridge>> bridges_;
};

}  // namespace kro
