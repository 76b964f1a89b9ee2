#include "bridges/KritaBridge.h"

#include "platform/Json.h"

namespace kro {
namespace {

std::string slotText(PickerPlugin slot) { return slot == PickerPlugin::primary ? "primary" : "secondary"; }

}  // namespace

std::string KritaProtocol::socketPath(const std::string& runtimeDirectory) { return runtimeDirectory + "/kroapp.Kro.krita.socket"; }

std::string KritaProtocol::getRequest(PickerPlugin slot) { return compactText(Json{{"op", "get"}, {"slot", slotText(slot)}}); }

std::string KritaProtocol::setRequest(PickerPlugin slot, const Rgb8& color) {
    return compactText(Json{{"op", "set"}, {"slot", slotText(slot)}, {"color", cssHex(color)}});
}

KritaProtocol::Reply KritaProtocol::readReply(const std::string& line) {
    const auto json = Json::parse(line, nullptr, false);
    if (!json.is_object() || !json.contains("ok") || !json["ok"].is_boolean()) return {false, std::nullopt, "the plug-in's answer is not understood"};
    if (!json["ok"].get<bool>()) {
        const auto error = json.contains("error") && json["error"].is_string() ? json["error"].get<std::string>() : "no reason given";
        return {false, std::nullopt, error};
    }
    Reply reply{true, std::nullopt, ""};
    if (json.contains("color")) {
        reply.color = json["color"].is_string() ? cssColor(json["color"].get<std::string>()) : std::nullopt;
        if (!reply.color) return {false, std::nullopt, "the plug-in's color is not a color"};
    }
    return reply;
}

template <class Result>
void KritaBridge::exchange(const std::string& request, const Answer<Result>& finish,
                           std::function<void(const KritaProtocol::Reply&)> done) {
    sockets_.exchange(socketPath_, request, kBridgeTimeLimit, [finish, done](const LocalSocketClient::Reply& answer) {
        if (!answer.line) {
            return finish.fail("Kro's Krita plug-in does not answer (" + answer.error +
                               "); install it with `kro krita-plugin install` and enable it in Krita");
        }
        const auto reply = KritaProtocol::readReply(*answer.line);
        if (!reply.ok) return finish.fail(reply.error);
        done(reply);
    });
}

void KritaBridge::getColor(PickerPlugin slot, GetDone done) {
    const Answer<std::vector<ColorValue>> finish(std::move(done), {}, "Krita get " + slotText(slot));
    exchange(KritaProtocol::getRequest(slot), finish, [finish](const KritaProtocol::Reply& reply) {
        if (!reply.color) return finish.fail("the plug-in's answer has no color");
        finish({*reply.color});
    });
}

void KritaBridge::setColor(PickerPlugin slot, const ColorValue& color, SetDone done) {
    const Answer<bool> finish(std::move(done), false, "Krita set " + slotText(slot));
    exchange(KritaProtocol::setRequest(slot, rgb8(color)), finish, [finish](const KritaProtocol::Reply&) { finish(true); });
}

}  // namespace kro
