// Design applications: a plugin-mode pick sent to the application in front, the get shortcuts, copyColor's
// targets 1 and 2, and the agent's side of `kro get` and `kro send`. The registry and the bridges answer
// later, on the main queue; nothing here waits for them.
#include "app/AppDelegate.h"
#include "bridges/Plugin.h"
#include "formats/ColorFormats.h"
#include "formats/SmartFormats.h"
#include "formats/color/ColorConversions.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "picker/Sound.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro {
namespace {

constexpr double kTooltipSeconds = 2.0;

std::string applicationName(const PluginItem& item) { return item.name.value_or(item.bundle.value_or("the application")); }

Json failure(const std::string& error) { return Json{{"ok", false}, {"error", error}}; }

}  // namespace

void AppDelegate::pickerDidSend(const ColorValue& color, PickerPlugin destination) {
    // The text goes first: whatever the application does, the colour is on the clipboard.
    const auto& current = Plugin::shared().current;
    const auto format = current && current->bundle ? smartFormatName(*current->bundle) : std::nullopt;
    sendOutputToClipboard(true, ColorFormats::shared().clipboardString(color, format));
    clipboardColor = color;
    Sound::playColor();
    sendToApplication(color, destination, std::nullopt, [](bool) {});
}

void AppDelegate::sendToApplication(const ColorValue& color, PickerPlugin slot, const std::optional<std::string>& application,
                                    std::function<void(bool)> done) {
    auto& plugin = Plugin::shared();
    plugin.setColor(plugin.target(application), slot, color, std::move(done));
}

void AppDelegate::deliverToApplication(const ColorValue& value, bool clipboard, ColorDeliveryTarget target) {
    const auto current = Plugin::shared().current;
    if (!current || !current->bundle || !SmartFormats::shared().item(*current->bundle)) return deliverPlainly(value, clipboard);
    const auto slot = target == ColorDeliveryTarget::secondary ? PickerPlugin::secondary : PickerPlugin::primary;
    sendToApplication(value, slot, std::nullopt, [this, value, clipboard, current](bool taken) {
        if (!taken) {
            clipboardColor = value;
            return deliverPlainly(value, clipboard);
        }
        sendOutputToClipboard(clipboard, ColorFormats::shared().clipboardString(value, smartFormatName(*current->bundle)));
        const auto label = ColorFormats::shared().pickerString(value) + " sent to " + applicationName(*current);
        env().mainQueue->post([this, label] { showStatusTooltip(label, kTooltipSeconds); });
    });
}

void AppDelegate::getApplicationColor(PickerPlugin slot, ColorDeliveryTarget delivery, const std::optional<std::string>& application,
                                      std::function<void(const std::vector<ColorValue>&)> done) {
    auto& plugin = Plugin::shared();
    const auto target = plugin.target(application);
    const auto name = target ? applicationName(*target->item) : std::string();
    plugin.getColor(target, slot, [this, name, delivery, done](const std::optional<PluginItemResult>& result) {
        const auto finish = [&done](const std::vector<ColorValue>& colors) {
            if (done) done(colors);
        };
        // Only an application with an icon of its own answers the shortcut, as its menu item shows it.
        if (!result || !result->icon || result->colors.empty()) return finish({});
        const auto& colors = result->colors;
        copyColor(Color::make(colors.front()), true, delivery);
        const auto label = ColorFormats::shared().pickerString(colors.front()) + " from " + name;
        env().mainQueue->post([this, label] { showStatusTooltip(label, kTooltipSeconds); });
        auto user = User::shared();
        bool added = false;
        for (const auto& color : colors) added = user->insertIntoTarget(Color::make(color)) || added;
        if (added) user->trigger(true, true, true, true);
        finish(colors);
    });
}

bool AppDelegate::isBridgeRequest(const std::string& line) {
    const auto request = Json::parse(line, nullptr, false);
    return request.is_object() && request.contains("bridge");
}

void AppDelegate::handleBridgeRequest(const std::string& line, const std::function<void(const std::string& reply)>& reply) {
    const auto request = Json::parse(line, nullptr, false);
    const auto answer = [reply](const Json& json) { reply(compactText(json)); };
    const auto operation = request.value("bridge", std::string());
    const auto slotText = request.value("slot", std::string("primary"));
    if ((operation != "get" && operation != "set") || (slotText != "primary" && slotText != "secondary")) {
        return answer(failure("the agent did not understand the request"));
    }
    const auto slot = slotText == "primary" ? PickerPlugin::primary : PickerPlugin::secondary;
    std::optional<std::string> application;
    if (request.contains("app") && request["app"].is_string()) application = request["app"].get<std::string>();

    const auto target = Plugin::shared().target(application);
    if (!target) {
        if (application) return answer(failure("no design application is known as " + *application));
        const auto& front = Plugin::shared().currentRunningApplication;
        return answer(failure((front ? "the application in front (" + front->bundle() + ")" : std::string("no application is in front, and it")) +
                              " has no bridge; name one with --app"));
    }
    const auto name = applicationName(*target->item);
    if (operation == "get") {
        // A read from the command line changes nothing in the application: the colour goes to the clipboard.
        return getApplicationColor(slot, ColorDeliveryTarget::clipboard, application, [answer, name](const std::vector<ColorValue>& colors) {
            if (colors.empty()) return answer(failure(name + " gave no color"));
            Json lines = Json::array();
            for (const auto& color : colors) lines.push_back(hexText(color));
            answer(Json{{"ok", true}, {"lines", lines}});
        });
    }
    // The command line sends six hex digits; anything else is refused before it reaches an application.
    const auto hex = request.contains("color") && request["color"].is_string() ? request["color"].get<std::string>() : "";
    const auto color = hex.size() == 6 ? cssColor("#" + hex) : std::nullopt;
    if (!color) return answer(failure("the color is not understood"));
    const auto format = target->item->bundle ? smartFormatName(*target->item->bundle) : std::nullopt;
    sendOutputToClipboard(true, ColorFormats::shared().clipboardString(*color, format));
    clipboardColor = *color;
    redrawStatusButton();
    sendToApplication(*color, slot, application, [answer, name](bool taken) {
        if (!taken) return answer(failure(name + " did not take the color; it is on the clipboard"));
        answer(Json{{"ok", true}, {"lines", Json::array()}});
    });
}

}  // namespace kro
