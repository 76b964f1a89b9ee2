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
        if (!reply.color) return {false, std::nullopt, "the plug-in's colour is not a colour"};
    }
    return reply;
}

void KritaBridge::exchange(const std::string& what, const std::string& request, std::function<void(const KritaProtocol::Reply&)> done) {
    sockets_.exchange(socketPath_, request, kBridgeTimeLimit, [what, done](const LocalSocketClient::Reply& answer) {
        if (!answer.line) {
            SHERLOG(what + ": Kro's Krita plug-in does not answer (" + answer.error +
                        "); install it with `kro krita-plugin install` and enable it in Krita",
                    SherlogLevel::error);
            return done({false, std::nullopt, answer.error});
        }
        const auto reply = KritaProtocol::readReply(*answer.line);
        if (!reply.ok) SHERLOG(what + ": " + reply.error, SherlogLevel::error);
        done(reply);
    });
}

void KritaBridge::getColor(PickerPlugin slot, GetDone done) {
    const auto what = "Krita get " + slotText(slot);
    auto finish = answerOnce<std::vector<ColorValue>>(std::move(done), {}, what);
    exchange(what, KritaProtocol::getRequest(slot), [what, finish](const KritaProtocol::Reply& reply) {
        if (reply.ok && !reply.color) SHERLOG(what + ": the plug-in's answer has no colour", SherlogLevel::error);
        finish(reply.ok && reply.color ? std::vector<ColorValue>{*reply.color} : std::vector<ColorValue>{});
    });
}

void KritaBridge::setColor(PickerPlugin slot, const ColorValue& color, SetDone done) {
    const auto what = "Krita set " + slotText(slot);
    auto finish = answerOnce<bool>(std::move(done), false, what);
    exchange(what, KritaProtocol::setRequest(slot, rgb8(color)), [finish](const KritaProtocol::Reply& reply) { finish(reply.ok); });
}

}  // namespace kro
