#include "bridges/Plugin.h"

#include <unistd.h>

#include <algorithm>

#include "bridges/GimpBridge.h"
#include "bridges/InkscapeBridge.h"
#include "bridges/KritaBridge.h"
#include "bridges/PluginParse.h"
#include "library/JsonDecode.h"
#include "library/Notifications.h"
#include "picker/CMD.h"
#include "platform/Resources.h"

namespace kro {
namespace {

// Simulated keys wait for the activated application to be in front; the copied text for the clipboard to
// change hands.
constexpr Seconds kPasteDelay{0.5};
constexpr Seconds kCopiedTextDelay{0.15};

std::unique_ptr<Plugin>& sharedPlugin() {
    static std::unique_ptr<Plugin> plugin;
    return plugin;
}

const PluginItemFunctionMap& getMap(const PluginItem& item, PickerPlugin slot) {
    return slot == PickerPlugin::primary ? item.getPrimaryColor : item.getSecondaryColor;
}

const PluginItemFunctionMap& setMap(const PluginItem& item, PickerPlugin slot) {
    return slot == PickerPlugin::primary ? item.setPrimaryColor : item.setSecondaryColor;
}

std::string displayName(const PluginItem& item) { return item.name.value_or(item.bundle.value_or("the application")); }

}  // namespace

Plugin& Plugin::shared() {
    auto& plugin = sharedPlugin();
    if (!plugin) plugin = std::make_unique<Plugin>();
    return *plugin;
}

void Plugin::resetSharedForTesting() { sharedPlugin().reset(); }

void Plugin::load() {
    const auto bytes = resource("Plugin.json");
    if (!bytes) SHERLOG("The resource Plugin.json is missing", SherlogLevel::error);
    load(bytes.value_or("{}"));
    env().notifications->post(Notifications::pluginsLoaded);
    env().notifications->post(Notifications::pluginsUpdated);
}

void Plugin::load(std::string_view json) {
    plugins.clear();
    try {
        const auto parsed = parseJson(json);
        const auto& object = json_decode::object(parsed, "Plugin");
        for (const auto& [key, value] : object.items()) plugins[key] = std::make_shared<const PluginItem>(PluginItem::fromJson(value));
    } catch (const JsonDecodeError& error) {
        plugins.clear();
        SHERLOG(std::string("The plugin entries do not decode: ") + error.what(), SherlogLevel::error);
    }
    applicationDidActivate(currentRunningApplication);
}

void Plugin::startTracking() {
    if (!services_.applications) return;
    services_.applications->start([this](const std::optional<RunningApplication>& application) { applicationDidActivate(application); });
}

void Plugin::applicationDidActivate(const std::optional<RunningApplication>& application) {
    // Kro's own windows in front leave the design application current: a colour goes to it, not to us.
    if (application && application->pid == getpid()) return;
    currentRunningApplication = application;
    current = nullptr;
    if (!application) return;
    for (const auto& [key, item] : plugins) {
        if (item->matches(*application)) {
            current = item;
            break;
        }
    }
}

std::optional<Plugin::Target> Plugin::target(const std::optional<std::string>& application) const {
    if (!application) {
        if (!current) return std::nullopt;
        return Target{current, currentRunningApplication};
    }
    PluginItemRef item;
    for (const auto& [key, candidate] : plugins) {
        if (key == *application || (candidate->name && lowerCase(*candidate->name) == lowerCase(*application))) item = candidate;
    }
    if (!item) return std::nullopt;
    if (item == current) return Target{current, currentRunningApplication};
    Target found{item, std::nullopt};
    // The topmost of its windows, for simulated keys; the bridges need none.
    if (services_.applications) {
        for (const auto& running : services_.applications->running()) {
            if (item->matches(running)) found.application = running;
        }
    }
    return found;
}

Bridge* Plugin::bridgeFor(const PluginItem& item) {
    const auto name = item.name.value_or("");
    if (auto found = bridges_.find(name); found != bridges_.end()) return found->second.get();
    std::unique_ptr<Bridge> bridge;
    if (name == "GIMP" && services_.sessionBus && services_.dropFolder) {
        bridge = std::make_unique<GimpBridge>(*services_.sessionBus, *services_.dropFolder);
    } else if (name == "Inkscape" && services_.sessionBus) {
        bridge = std::make_unique<InkscapeBridge>(*services_.sessionBus, services_.clipboard, [this] {
            const auto inkscape = target("Inkscape");
            if (!inkscape || !inkscape->application) return false;
            activate(*inkscape);
            CMD::performCopy(services_.clipboard);
            return true;
        });
    } else if (name == "Krita" && services_.localSockets) {
        bridge = std::make_unique<KritaBridge>(*services_.localSockets, KritaProtocol::socketPath(env().paths.runtimeDir));
    }
    if (!bridge) return nullptr;
    return bridges_.emplace(name, std::move(bridge)).first->second.get();
}

void Plugin::activate(const Target& target) {
    if (!services_.applications || !target.application || target.application == currentRunningApplication) return;
    services_.applications->activate(*target.application);
}

void Plugin::getColor(const std::optional<Target>& target, PickerPlugin slot, GetDone done) {
    if (!target) return done(std::nullopt);
    const auto item = target->item;
    const auto function = functionOf(getMap(*item, slot));
    if (function == PluginItemFunction::copy) {
        activate(*target);
        CMD::performCopy(services_.clipboard);
        env().mainQueue->post(
            [this, item, done] {
                const auto text = services_.clipboard ? services_.clipboard->text() : std::nullopt;
                done(PluginItemResult{item->icon, text ? PluginParse::colors(*text) : std::vector<ColorValue>{}});
            },
            kCopiedTextDelay);
        return;
    }
    Bridge* bridge = function == PluginItemFunction::bridge ? bridgeFor(*item) : nullptr;
    if (!bridge) {
        SHERLOG(displayName(*item) + " has no way to read its color here", SherlogLevel::error);
        return done(std::nullopt);
    }
    bridge->getColor(slot, [item, done](const std::vector<ColorValue>& colors) { done(PluginItemResult{item->icon, colors}); });
}

void Plugin::setColor(const std::optional<Target>& target, PickerPlugin slot, const ColorValue& color, SetDone done) {
    if (!target) return done(false);
    const auto item = target->item;
    const auto function = functionOf(setMap(*item, slot));
    if (function == PluginItemFunction::paste) {
        // The text is on the clipboard already; the keys go once the application is in front.
        activate(*target);
        env().mainQueue->post([] { CMD::performPaste(); }, kPasteDelay);
        return done(true);
    }
    Bridge* bridge = function == PluginItemFunction::bridge ? bridgeFor(*item) : nullptr;
    if (!bridge) {
        SHERLOG(displayName(*item) + " has no way to take a colour here", SherlogLevel::error);
        return done(false);
    }
    bridge->setColor(slot, color, std::move(done));
}

}  // namespace kro
